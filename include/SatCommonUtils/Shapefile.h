/// @file
/// Shapefiles: the main file (.shp) of the ESRI format, its header, and one polygon a file.
///
/// The layouts are those of the "ESRI Shapefile Technical Description" (July 1998). Coordinates are
/// in the units of the file's coordinate system. An object may be used by one thread at a time;
/// different objects, on different streams, by several.
#pragma once

#include <cfloat>
#include <string>
#include <vector>

#include "Kv/Stream.h"
#include "SatCommonUtils/Export.h"

namespace SatCommonUtils {

/// The format's codes of what a file holds. Z types have a height a point, Z and M types a measure.
enum TShapeFileType : int {
  sftInvalid = -1,  ///< none of the codes
  sftNull = 0,
  sftPoint = 1,
  sftPolyline = 3,
  sftPolygon = 5,
  sftMultipoint = 8,
  sftPointZ = 11,
  sftPolylineZ = 13,
  sftPolygonZ = 15,
  sftMultipointZ = 18,
  sftPointM = 21,
  sftPolylineM = 23,
  sftPolygonM = 25,
  sftMultipointM = 28,
  sftMultipatch = 31,
};

/// The type with this code; sftInvalid when there is none.
RAVELIN_EXPORT TShapeFileType IntToShapeFileType(int code);
/// Whether it is one of the four Z types. A multipatch is not.
RAVELIN_EXPORT bool IsZtype(TShapeFileType type);
/// Whether it is one of the four M types.
RAVELIN_EXPORT bool IsMtype(TShapeFileType type);

#pragma pack(push, 1)

/// The header of a main file, its 100 bytes as they are stored: big-endian fields stay so in
/// memory. A new one has an empty box and is not valid.
struct RAVELIN_EXPORT TShapeFileHeader {
  int fileCode = -1;           ///< big-endian; 9994
  int unused1 = 0;             ///< big-endian, as the next four
  int unused2 = 0;             ///< 0
  int unused3 = 0;             ///< 0
  int unused4 = 0;             ///< 0
  int unused5 = 0;             ///< 0
  int fileLength = 0;          ///< big-endian; of the whole file, in units of two bytes
  int version = 0;             ///< little-endian, as all that follows; 1000
  int shapeType = sftInvalid;  ///< a code of TShapeFileType
  double xMin = DBL_MAX;       ///< west edge of all points
  double yMin = DBL_MAX;       ///< south edge
  double xMax = -DBL_MAX;      ///< east edge
  double yMax = -DBL_MAX;      ///< north edge
  double zMin = DBL_MAX;       ///< smallest height
  double zMax = -DBL_MAX;      ///< largest height
  double mMin = DBL_MAX;       ///< smallest measure
  double mMax = -DBL_MAX;      ///< largest measure

  /// An empty box, not valid.
  TShapeFileHeader();

  /// Whether file code, version and type are right and no range is inverted: x and y of every type,
  /// z of a Z type, m of an M type. The length is not looked at.
  operator bool() const;

  /// Prints every field to the debug sink, a line each.
  void DebugOutput(const std::string& title) const;
};

/// The record header and the fixed part of a polygon record, 52 bytes as they are stored. Behind
/// them come `numParts` start indices (32-bit, counted in points) and `numPoints` points.
struct RAVELIN_EXPORT TShapeFilePolygonHeader {
  int recordNumber = 0;        ///< big-endian; from 1
  int contentLength = 0;       ///< big-endian; of what follows, in units of two bytes
  int shapeType = sftInvalid;  ///< little-endian, as all that follows
  double xMin = DBL_MAX;       ///< west edge of the polygon
  double yMin = DBL_MAX;       ///< south edge
  double xMax = -DBL_MAX;      ///< east edge
  double yMax = -DBL_MAX;      ///< north edge
  int numParts = -1;           ///< rings
  int numPoints = -1;          ///< points of all rings, closing points counted

  /// An empty box, not valid.
  TShapeFilePolygonHeader();

  /// Whether the type is polygon or polygon Z, the box is not inverted, and the points are at least
  /// as many as the parts.
  operator bool() const;

  /// Prints every field to the debug sink, a line each.
  void DebugOutput(const std::string& title) const;
};

#pragma pack(pop)

/// A header that was checked and decoded. Each minimum is followed by its maximum, other than in
/// the file.
struct RAVELIN_EXPORT TShapeFileHeaderInfo {
  unsigned int fileLength = 0;            ///< bytes; 0: none
  TShapeFileType shapeType = sftInvalid;  ///< of all shapes in the file
  double xMin = DBL_MAX;                  ///< west edge of all points
  double xMax = -DBL_MAX;                 ///< east edge
  double yMin = DBL_MAX;                  ///< south edge
  double yMax = -DBL_MAX;                 ///< north edge
  double zMin = DBL_MAX;                  ///< smallest height
  double zMax = -DBL_MAX;                 ///< largest height
  double mMin = DBL_MAX;                  ///< smallest measure
  double mMax = -DBL_MAX;                 ///< largest measure

  /// Not valid.
  TShapeFileHeaderInfo();
  /// Throws std::runtime_error where Setup gives false.
  TShapeFileHeaderInfo(const TShapeFileHeader& src);

  /// Not valid again, as a new one.
  void Reset();

  /// Takes over a header; false when it is not valid or says a length of 0. The ranges of z and m
  /// are taken over for a Z type only, so the header of an M type always gives false: callers rely
  /// on M types being refused. A failure leaves what was taken over so far.
  bool Setup(const TShapeFileHeader& header);

  /// Whether there is a length and a type and no range is inverted, as for the header.
  operator bool() const;
};

/// What a main file holds: here its header alone. Copies are independent.
class RAVELIN_EXPORT TShapeFileData {
 public:
  TShapeFileHeaderInfo info;  ///< the header, decoded

  /// Not valid.
  TShapeFileData();
  virtual ~TShapeFileData();

  /// Reads the header, 100 bytes from where the stream stands. False, and not valid, for a null
  /// stream, a short read and a header that TShapeFileHeaderInfo::Setup refuses. What the stream
  /// throws passes.
  virtual bool Initialize(TKvStream* stream);
  /// Writes the content; false here: there is none.
  virtual bool Write(TKvStream* stream) const;
  /// Without content again.
  virtual void Reset();
  /// Whether there is content.
  virtual operator bool() const;

  /// Opens the file and calls Initialize. False, and reset, when it cannot be opened or read; no
  /// exception passes.
  bool InitializeFromFile(const std::string& path);
  /// Creates or empties the file and calls Write. False when the object is not valid, the file is
  /// left alone then, and when the file cannot be opened or written; no exception passes.
  bool WriteToFile(const std::string& path) const;
};

/// The type of the shapefile whose header stands where the stream does; sftInvalid for a null
/// stream, a short read and an invalid header. Types that cannot be read otherwise are told too.
RAVELIN_EXPORT TShapeFileType CheckShapeFile(TKvStream* stream);
/// The same of a file; sftInvalid also when it cannot be opened.
RAVELIN_EXPORT TShapeFileType CheckShapeFile(const std::string& path);

/// A point of the plane, in the units of the file's coordinate system.
struct TShapeFilePoint {
  double x = DBL_MAX;  ///< to the east
  double y = DBL_MAX;  ///< to the north
};

/// The points of one closed line, without the closing point: the first is not repeated at the end.
using TShapeFileRing = std::vector<TShapeFilePoint>;

/// One polygon, and the main file that holds it.
///
///     TShapeFilePolygonData outline;
///     outline.Setup({{{0, 0}, {0, 1}, {1, 1}, {1, 0}}});
///     outline.WriteToFile("square.shp");
///
/// `rings` may be changed between Setup and Write; the box in `info` is written as it is.
class RAVELIN_EXPORT TShapeFilePolygonData : public TShapeFileData {
 public:
  std::vector<TShapeFileRing> rings;  ///< in the order of the file

  /// Empty and not valid, type polygon.
  TShapeFilePolygonData();
  ~TShapeFilePolygonData() override;

  /// Takes a copy of the rings, and their length and box to `info`; coordinates that are NaN do not
  /// count for the box. False, and reset, when there are no rings or no points, when the file would
  /// be longer than a file may be (4 GiB), and when there is no memory.
  bool Setup(const std::vector<TShapeFileRing>& rings);

  /// Points that a file of the rings has: one a ring more than they hold, which closes it.
  unsigned int GetPointsNumber() const;

  /// Reads the first record of a polygon or polygon Z file from its beginning; heights and measures
  /// are left out. The first ring starts at the first point whatever its index says. False for
  /// anything else: another type, a stored length other than the stream's size, counts that the
  /// stream cannot hold, part indices that descend or lie outside the points, a ring of less than
  /// three points and a closing point, short reads, no memory. The rings before a bad one stay.
  /// What the stream throws passes. Memory is in proportion to the stream's size, time linear in
  /// it.
  bool Initialize(TKvStream* stream) override;

  /// Writes a whole main file with one polygon record; false when the object is not valid, or when
  /// the stream takes less than it is given. A ring without points is written as the default point.
  /// The start index of a part does not count the closing points of the parts before it, so from
  /// the second ring on indices fall short: callers rely on it. A file of one ring reads back as it
  /// was. What the stream throws passes.
  bool Write(TKvStream* stream) const override;

  /// Empty and not valid, type polygon.
  void Reset() override;
  /// Whether there are rings and `info` is that of a polygon or polygon Z file.
  operator bool() const override;

  /// Prints every point to the debug sink, a line each, and a line before each ring.
  void DebugOutput() const;
};

}  // namespace SatCommonUtils
