// The order of virtual operations, read back from the vtables that the libraries export and
// compared with the order that hosts are compiled against.
#include <cxxabi.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <link.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "SatCommonUtils/Raster.h"
#include "SatCommonUtils/Shapefile.h"
#include "SatCommonUtils/Tree.h"

namespace {

using Slots = std::vector<std::string>;

std::string Demangled(const char* name) {
  int status = 0;
  char* text = abi::__cxa_demangle(name, nullptr, nullptr, &status);
  const std::string demangled = status == 0 ? text : name;
  std::free(text);
  return demangled;
}

/// "Class::operation", "Class::destructor", "Class::deleting destructor", "pure" or "empty".
std::string NameOf(const void* function) {
  if (function == nullptr) return "empty";
  Dl_info info;
  if (dladdr(function, &info) == 0 || info.dli_sname == nullptr) return "not exported";
  const std::string mangled = info.dli_sname;
  if (mangled == "__cxa_pure_virtual") return "pure";
  const std::string name = Demangled(info.dli_sname);
  const std::size_t tilde = name.find("::~");
  if (tilde == std::string::npos) return name;
  const bool deleting = mangled.find("D0Ev") != std::string::npos;
  return name.substr(0, tilde) + (deleting ? "::deleting destructor" : "::destructor");
}

/// What every slot of an exported vtable holds, in order: behind the offset to the top and the
/// type.
Slots SlotsOf(const char* vtableSymbol) {
  const void* vtable = dlsym(RTLD_DEFAULT, vtableSymbol);
  if (vtable == nullptr) return {"no such vtable"};
  Dl_info info;
  ElfW(Sym)* symbol = nullptr;
  if (dladdr1(vtable, &info, reinterpret_cast<void**>(&symbol), RTLD_DL_SYMENT) == 0) return {};
  const auto* words = static_cast<const void* const*>(vtable);
  Slots names;
  for (std::size_t i = 2; i < symbol->st_size / sizeof(void*); ++i)
    names.push_back(NameOf(words[i]));
  return names;
}

const std::string kRequest =
    "(TKvDibDataOutBuffer const&, TKvDibRect const&, TInterpolationQuality const&, int, "
    "TKvProgressHandler*)";

/// The operations of a raster in slot order; a class has the first eleven, sixteen, eighteen or
/// all.
const Slots kRasterOperations = {
    "destructor",
    "deleting destructor",
    "Bounds() const",
    "BoundsEx(TKvDibRect const&) const",
    "Channels() const",
    "GetInterpolationLevel(TKvDibRect const&, TInterpolationQuality const&, bool*) const",
    "GetRect" + kRequest,
    "FillDefaultColor(TKvDibDataOutBuffer const&, vec_t_<unsigned long, 2> const&)",
    "PurgeCache()",
    "GetAllLevels(std::vector<TKvDibRect, std::allocator<TKvDibRect> >*) const",
    "GetScaleDimensions(unsigned long) const",
    "GetImageName[abi:cxx11]() const",
    "Rect2RectI(TKvDibRect const&, TInterpolationQuality const&, int, TKvDibRectI*, bool)",
    "RectI2Rect(unsigned long, TKvDibRectI const&)",
    "ResetLevelBounds()",
    "FillDefaultLevelBounds(vec_t_<unsigned long, 2>, unsigned long)",
    "GetRect(unsigned long, TKvDibRectI const&, TKvDibDataOutBuffer const&)",
    "AllocReadData(long*, long*)",
    "GetReadBuffer() const",
    "ReadData(long*, long*)",
};

const Slots kStreamOperations = {
    "destructor",
    "deleting destructor",
    "IsOpen() const",
    "Read(void*, unsigned long)",
    "Write(void const*, unsigned long)",
    "SetPos(unsigned long)",
    "GetPos() const",
    "getSize() const",
    "Eof() const",
    "ReadLine(char*, unsigned long)",
    "Purge()",
};

const std::string kText =
    "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >";

/// The last two are the hooks that the operations that are not virtual call.
const Slots kXIniWriterOperations = {
    "destructor",
    "deleting destructor",
    "EndSection(unsigned long)",
    "SetAttributeMode(bool)",
    "ReportWriteError()",
    "WriteItemText(" + kText + " const&, std::basic_string_view<char, std::char_traits<char> >)",
    "OpenSection(" + kText + " const&, bool)",
};

const Slots kShapeFileOperations = {
    "destructor", "deleting destructor",   "Initialize(TKvStream*)", "Write(TKvStream*) const",
    "Reset()",    "operator bool() const",
};

/// The operations of a field and of a tree of texts. Their destructors are not virtual. The
/// compiler marks a result that is a string only where no other part of the name has one.
const Slots kFieldOperations = {
    "WriteToString(char*, unsigned long, unsigned long) const",
    "WriteToXML(TKvXIniWriter*) const",
    "ValueToString(unsigned long, char*, unsigned long) const",
    "ValueToString(unsigned long) const",
    "StringToValue(char const*, unsigned long, unsigned long)",
    "StringToValue(" + kText + " const&, unsigned long)",
};

const Slots kTreeOperations = {
    "WriteToXML(TKvXIniWriter*) const",
    "CreateSubtree(int, int, " + kText + ")",
    "CreateSubtree(char const*, unsigned long*)",
    "CreateSubtree(TKvXIniReader*, unsigned long)",
    "CreateField(int, int, " + kText + "*, unsigned long, " + kText + ")",
    "CreateField(int, int, " + kText + " const&, " + kText + ")",
    "CreateField(char const*, unsigned long*)",
    "CreateField(TKvXIniReader*, unsigned long)",
};

/// With the compiler's mark of a string in the result put into the names of some operations.
Slots Marked(Slots operations, const std::vector<std::size_t>& which) {
  for (const std::size_t i : which) operations[i].insert(operations[i].find('('), "[abi:cxx11]");
  return operations;
}

/// Compares the slots of a class with each operation and the class that supplies it; "" for a pure
/// one. The destructors of an abstract class are never called through its vtable, so g++ leaves
/// their slots empty.
void ExpectSlots(const char* vtableSymbol, const Slots& operations, const Slots& suppliers) {
  Slots expected;
  bool abstract = false;
  for (std::size_t i = 0; i < suppliers.size(); ++i) {
    abstract = abstract || suppliers[i].empty();
    expected.push_back(suppliers[i].empty() ? "pure" : suppliers[i] + "::" + operations.at(i));
  }
  const Slots found = SlotsOf(vtableSymbol);
  if (abstract && found.size() > 1 && found[0] == "empty") expected[0] = expected[1] = "empty";
  EXPECT_EQ(found, expected);
}

const std::string D = "TKvDibData";
const std::string M = "TKvMultiScaleDibData";
const std::string B = "SatCommonUtils::TBasePushbroomDibData";
const std::string P = "SatCommonUtils::TPushbroomDibData<unsigned short>";
const std::string R = "SatCommonUtils::TRawDibData<unsigned short>";
const std::string W = "SatCommonUtils::TRawWordDibData";
const std::string E = "SatCommonUtils::TPushbroomDibDataEnvelope";
const std::string C = "SatCommonUtils::TSeparateBandsDibData";
const std::string T = "SatCommonUtils::TSuperTiledDibDataEnvelope";
const std::string pure;

TEST(VtableTest, TheAbstractRasterHasItsTwelveSlotsInOrder) {
  ExpectSlots("_ZTV10TKvDibData", kRasterOperations,
              {D, D, pure, D, pure, pure, pure, D, pure, pure, pure, D});
}

TEST(VtableTest, TheMultiScaleRasterContinuesWithFiveSlots) {
  ExpectSlots("_ZTV20TKvMultiScaleDibData", kRasterOperations,
              {M, M, M, D, pure, M, M, D, pure, M, M, D, M, M, M, M, M});
}

TEST(VtableTest, TheMemoryRasterKeepsTheSlotsOfTheMultiScaleRaster) {
  const std::string Y = "TKvMemoryDibData";
  ExpectSlots("_ZTV16TKvMemoryDibData", kRasterOperations,
              {Y, Y, M, D, Y, M, M, D, Y, M, M, D, M, M, M, M, Y});
}

TEST(VtableTest, TheBandBaseContinuesWithTheReadHooks) {
  ExpectSlots("_ZTVN14SatCommonUtils21TBasePushbroomDibDataE", kRasterOperations,
              {B, B, M, D, B, M, M, D, pure, M, M, D, M, M, M, M, M, B, B});
}

TEST(VtableTest, ThePushbroomBandEndsWithReadData) {
  ExpectSlots("_ZTVN14SatCommonUtils17TPushbroomDibDataItEE", kRasterOperations,
              {P, P, M, D, B, M, P, D, pure, M, M, D, M, M, M, M, M, P, P, pure});
}

TEST(VtableTest, TheRawBandFillsPurgeCacheAndReadData) {
  ExpectSlots("_ZTVN14SatCommonUtils11TRawDibDataItEE", kRasterOperations,
              {R, R, M, D, B, M, P, D, R, M, M, D, M, M, M, M, M, P, P, R});
}

TEST(VtableTest, TheSixteenBitBandOverridesReadDataAgain) {
  ExpectSlots("_ZTVN14SatCommonUtils15TRawWordDibDataE", kRasterOperations,
              {W, W, M, D, B, M, P, D, R, M, M, D, M, M, M, M, M, P, P, W});
}

TEST(VtableTest, TheEnvelopeOverridesGetRectAndPurgeCacheAlone) {
  ExpectSlots("_ZTVN14SatCommonUtils25TPushbroomDibDataEnvelopeE", kRasterOperations,
              {E, E, M, D, B, M, E, D, E, M, M, D, M, M, M, M, M, B, B});
}

TEST(VtableTest, TheCompositorOverridesGetRectAndPurgeCacheAlone) {
  ExpectSlots("_ZTVN14SatCommonUtils21TSeparateBandsDibDataE", kRasterOperations,
              {C, C, M, D, B, M, C, D, C, M, M, D, M, M, M, M, M, B, B});
}

TEST(VtableTest, TheSuperTiledRasterOverridesGetRectAndPurgeCacheAlone) {
  ExpectSlots("_ZTVN14SatCommonUtils26TSuperTiledDibDataEnvelopeE", kRasterOperations,
              {T, T, M, D, B, M, T, D, T, M, M, D, M, M, M, M, M, B, B});
}

TEST(VtableTest, TheAbstractStreamHasItsElevenSlotsInOrder) {
  const std::string S = "TKvStream";
  ExpectSlots("_ZTV9TKvStream", kStreamOperations,
              {S, S, pure, pure, pure, pure, pure, pure, pure, S, S});
}

TEST(VtableTest, TheFileStreamKeepsTheSlotsOfTheStream) {
  const std::string F = "TKvFileStream";
  ExpectSlots("_ZTV13TKvFileStream", kStreamOperations, {F, F, F, F, F, F, F, F, F, F, F});
}

TEST(VtableTest, TheMemoryStreamKeepsTheSlotsOfTheStream) {
  const std::string S = "TKvStream", Y = "TKvMemoryStream";
  ExpectSlots("_ZTV15TKvMemoryStream", kStreamOperations, {Y, Y, Y, Y, Y, Y, Y, Y, Y, Y, S});
}

TEST(VtableTest, TheProgressHandlerHasItsSlotsInOrder) {
  const std::string H = "TKvProgressHandler";
  ExpectSlots("_ZTV18TKvProgressHandler",
              {"destructor", "deleting destructor", "NeedsService()", "Service()", "Start(bool)",
               "Step(unsigned long)", "Stop()"},
              {H, H, pure, pure, H, H, H});
}

TEST(VtableTest, TheXIniWriterHasItsSlotsInOrder) {
  const std::string X = "TKvXIniWriter";
  ExpectSlots("_ZTV13TKvXIniWriter", kXIniWriterOperations, Slots(7, X));
}

TEST(VtableTest, TheXIniStreamWriterKeepsTheSlotsOfTheWriter) {
  const std::string X = "TKvXIniStreamWriter";
  ExpectSlots("_ZTV19TKvXIniStreamWriter", kXIniWriterOperations, Slots(7, X));
}

TEST(VtableTest, TheXIniReaderHasItsSlotsInOrder) {
  const std::string X = "TKvXIniReader";
  ExpectSlots(
      "_ZTV13TKvXIniReader",
      {"destructor", "deleting destructor", "EnterItem(unsigned long)",
       "HasItem(unsigned long) const", "GetItemCount() const", "LeaveSection(unsigned long)"},
      Slots(6, X));
}

TEST(VtableTest, TheXmlItemHasItsSlotsInOrder) {
  const std::string X = "TKvXmlItem";
  ExpectSlots("_ZTV10TKvXmlItem", {"destructor", "deleting destructor", "Element() const"},
              Slots(3, X));
}

TEST(VtableTest, AShapeFileHasItsSlotsInOrder) {
  ExpectSlots("_ZTVN14SatCommonUtils14TShapeFileDataE", kShapeFileOperations,
              Slots(6, "SatCommonUtils::TShapeFileData"));
}

TEST(VtableTest, ThePolygonOverridesEveryOperationOfAShapeFile) {
  ExpectSlots("_ZTVN14SatCommonUtils21TShapeFilePolygonDataE", kShapeFileOperations,
              Slots(6, "SatCommonUtils::TShapeFilePolygonData"));
}

const std::string DF = "SatCommonUtils::TDataField<" + kText + " >";
const std::string DT = "SatCommonUtils::TDataTree<" + kText + " >";

TEST(VtableTest, TheFieldHasItsSixSlotsInOrderWithoutADestructor) {
  ExpectSlots(
      "_ZTVN14SatCommonUtils10TDataFieldINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEEE",
      kFieldOperations, Slots(6, DF));
}

TEST(VtableTest, TheTreeHasItsEightSlotsInOrderWithoutADestructor) {
  ExpectSlots(
      "_ZTVN14SatCommonUtils9TDataTreeINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEEE",
      kTreeOperations, Slots(8, DT));
}

TEST(VtableTest, TheStringTreeFieldOverridesTheFourValueConversions) {
  const std::string F = "SatCommonUtils::TStringTreeField";
  ExpectSlots("_ZTVN14SatCommonUtils16TStringTreeFieldE", Marked(kFieldOperations, {3}),
              {DF, DF, F, F, F, F});
}

TEST(VtableTest, TheStringTreeOverridesTheSevenFactories) {
  const std::string S = "SatCommonUtils::TStringTree";
  ExpectSlots("_ZTVN14SatCommonUtils11TStringTreeE", Marked(kTreeOperations, {2, 3, 6, 7}),
              {DT, S, S, S, S, S, S, S});
}

TEST(VtableTest, TheListOfFileNamesHasItsDestructorAlone) {
  const std::string F = "SatCommonUtils::TFilenamesList";
  ExpectSlots("_ZTVN14SatCommonUtils14TFilenamesListE", {"destructor", "deleting destructor"},
              {F, F});
}

TEST(VtableTest, AnObjectStartsWithThePointerToItsExportedVtable) {
  SatCommonUtils::TRawWordDibData band;
  const void* pointer;
  std::memcpy(&pointer, static_cast<const void*>(&band), sizeof pointer);
  const auto* vtable = static_cast<const void* const*>(
      dlsym(RTLD_DEFAULT, "_ZTVN14SatCommonUtils15TRawWordDibDataE"));
  EXPECT_EQ(pointer, vtable + 2);
}

}  // namespace
