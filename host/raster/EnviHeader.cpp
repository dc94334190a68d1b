#include "host/raster/EnviHeader.h"

#include <array>

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/ParseNumber.h"

namespace ravelin {
namespace {

struct DataType {
  int code;
  unsigned long bytes;
  const char* name;
};

constexpr std::array<DataType, 11> kDataTypes = {{
    {1, 1, "unsigned 8-bit"},
    {2, 2, "signed 16-bit"},
    {3, 4, "signed 32-bit"},
    {4, 4, "32-bit float"},
    {5, 8, "64-bit float"},
    {6, 8, "complex of 32-bit floats"},
    {9, 16, "complex of 64-bit floats"},
    {12, 2, "unsigned 16-bit"},
    {13, 4, "unsigned 32-bit"},
    {14, 8, "signed 64-bit"},
    {15, 8, "unsigned 64-bit"},
}};

const DataType* FindDataType(int code) {
  for (const DataType& type : kDataTypes) {
    if (type.code == code) return &type;
  }
  return nullptr;
}

struct Field {
  std::string name;   // lower case
  std::string value;  // without its braces
  unsigned long line;
};

std::string Trimmed(std::string_view text) {
  return trim(std::string(text));
}

class Scanner {
 public:
  Scanner(std::string_view text, const std::string& file) : rest_(text), file_(file) {
    if (Trimmed(NextLine()) != "ENVI") Fail(1, "does not begin with ENVI");
  }

  bool Next(Field& field) {
    while (!rest_.empty()) {
      const std::string_view line = NextLine();
      const std::string plain = Trimmed(line);
      if (plain.empty() || plain.front() == ';') continue;
      const std::size_t equals = line.find('=');
      if (equals == std::string_view::npos) Fail(line_, "has no '='");
      field.line = line_;
      field.name = tolower(Trimmed(line.substr(0, equals)));
      field.value = Value(Trimmed(line.substr(equals + 1)));
      return true;
    }
    return false;
  }

  [[noreturn]] void Fail(unsigned long line, const std::string& what) const {
    throw HostError(file_, "line " + std::to_string(line) + ": " + what,
                    "check that it is an ENVI header");
  }

  unsigned long Line() const { return line_; }

 private:
  std::string_view NextLine() {
    const std::size_t end = rest_.find('\n');
    const std::string_view line = rest_.substr(0, end);
    rest_ = end == std::string_view::npos ? std::string_view() : rest_.substr(end + 1);
    ++line_;
    return line;
  }

  std::string Value(std::string value) {
    if (value.empty() || value.front() != '{') return value;
    const unsigned long first = line_;
    std::size_t close = value.find('}');
    while (close == std::string::npos) {
      if (rest_.empty()) Fail(first, "opens a brace that is not closed");
      const std::size_t searched = value.size();
      value += '\n';
      value += NextLine();
      close = value.find('}', searched);
    }
    return trim(value.substr(1, close - 1));
  }

  std::string_view rest_;
  const std::string& file_;
  unsigned long line_ = 0;
};

template <class T>
T NumberOf(const Field& field, const Scanner& scanner) {
  const std::optional<T> number = ParseNumber<T>(field.value);
  if (!number) scanner.Fail(field.line, "'" + field.name + "' is not a whole number from 0");
  return *number;
}

std::vector<std::string> ListOf(std::string_view text) {
  std::vector<std::string> list;
  while (true) {
    const std::size_t comma = text.find(',');
    list.push_back(Trimmed(text.substr(0, comma)));
    if (comma == std::string_view::npos) return list;
    text.remove_prefix(comma + 1);
  }
}

struct Found {
  bool samples = false;
  bool lines = false;
  bool bands = false;
  bool dataType = false;
};

void Take(const Field& field, const Scanner& scanner, EnviHeader& header, Found& found) {
  if (field.name == "samples") {
    header.samples = NumberOf<unsigned long>(field, scanner);
    found.samples = true;
  } else if (field.name == "lines") {
    header.lines = NumberOf<unsigned long>(field, scanner);
    found.lines = true;
  } else if (field.name == "bands") {
    header.bands = NumberOf<unsigned long>(field, scanner);
    found.bands = true;
  } else if (field.name == "header offset") {
    header.headerOffset = NumberOf<unsigned long>(field, scanner);
  } else if (field.name == "data type") {
    header.dataType = NumberOf<int>(field, scanner);
    found.dataType = true;
  } else if (field.name == "interleave") {
    header.interleave = tolower(field.value);
  } else if (field.name == "byte order") {
    header.byteOrder = NumberOf<int>(field, scanner);
  } else if (field.name == "band names") {
    header.bandNames = ListOf(field.value);
  }
}

void CheckComplete(const Found& found, const Scanner& scanner) {
  const std::pair<bool, const char*> needed[] = {{found.samples, "samples"},
                                                 {found.lines, "lines"},
                                                 {found.bands, "bands"},
                                                 {found.dataType, "data type"}};
  for (const auto& [there, name] : needed) {
    if (!there) {
      scanner.Fail(scanner.Line(), std::string("the header ends without '") + name + "'");
    }
  }
}

}  // namespace

std::string FormatEnviHeader(const EnviHeader& header) {
  std::string names;
  for (const std::string& name : header.bandNames) names += (names.empty() ? "" : ", ") + name;
  return "ENVI\nsamples = " + std::to_string(header.samples) +
         "\nlines = " + std::to_string(header.lines) + "\nbands = " + std::to_string(header.bands) +
         "\nheader offset = " + std::to_string(header.headerOffset) +
         "\nfile type = ENVI Standard\ndata type = " + std::to_string(header.dataType) +
         "\ninterleave = " + header.interleave +
         "\nbyte order = " + std::to_string(header.byteOrder) + "\nband names = {" + names + "}\n";
}

EnviHeader ParseEnviHeader(std::string_view text, const std::string& file) {
  Scanner scanner(text, file);
  EnviHeader header;
  Found found;
  Field field;
  while (scanner.Next(field)) Take(field, scanner, header, found);
  CheckComplete(found, scanner);
  return header;
}

unsigned long EnviSampleBytes(int dataType) {
  const DataType* type = FindDataType(dataType);
  return type == nullptr ? 0 : type->bytes;
}

std::string EnviTypeName(int dataType) {
  const DataType* type = FindDataType(dataType);
  return type == nullptr ? "unknown" : type->name;
}

std::string EnviHeaderPath(const std::string& imagePath) {
  const std::size_t name = imagePath.rfind('/') + 1;
  const std::size_t dot = imagePath.rfind('.');
  const bool hasEnding = dot != std::string::npos && dot >= name;
  return imagePath.substr(0, hasEnding ? dot : imagePath.size()) + ".hdr";
}

}  // namespace ravelin
