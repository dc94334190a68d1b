#include "host/xml/XmlCommand.h"

#include <memory>
#include <string>

#include "host/io/TextEncoding.h"
#include "host/io/TextInput.h"
#include "host/io/TextOutput.h"
#include "host/xml/XmlConversion.h"
#include "host/xml/XmlValue.h"

namespace ravelin {
namespace {

constexpr unsigned long kLongestInput = 1UL << 28;

struct ConversionArguments {
  std::string input;
  std::string output;
};

struct ValueArguments {
  std::string file;
  std::string path;
};

/// One conversion and how its subcommand is described.
struct Converter {
  const char* name;
  const char* description;
  const char* input;
  const char* footer;
  unsigned long longestInput;
  XmlConversion convert;
};

// The XML of WKT can be a hundred times as long as the text.
constexpr Converter kConverters[] = {
    {"pvl", "Convert PVL whose statements end with ';'", "PVL text, - for standard input",
     "Example:\n  ravelin xml pvl scene.IMD -o scene.xml", kLongestInput, PvlXml},
    {"nasa-pvl", "Convert PVL whose statements end with their line",
     "PVL text, - for standard input",
     "Example:\n  ravelin xml nasa-pvl scene_MTL.txt -o scene.xml", kLongestInput, NasaPvlXml},
    {"wkt", "Convert the WKT of a coordinate system", "WKT text, - for standard input",
     "Example:\n  ravelin xml wkt scene.prj", 1UL << 24, WktXml},
};

void Convert(const Converter& converter, const ConversionArguments& arguments) {
  const TextInput input = ReadTextInput(arguments.input, converter.longestInput);
  const std::string xml = converter.convert(DecodedText(input.text, input.name), input.name);
  WriteTextOutput(xml, arguments.output);
}

void PrintValue(const ValueArguments& arguments) {
  const TextInput input = ReadTextInput(arguments.file, kLongestInput);
  // XML tells its encoding itself.
  RefuseUtf32(input.text, input.name);
  PrintText(XmlValue(input.text, arguments.path, input.name) + "\n");
}

void AddConverter(CommandEntry& xml, const Converter& converter) {
  const auto arguments = std::make_shared<ConversionArguments>();
  CommandEntry command = xml.AddCommand(converter.name, converter.description);
  command.AddOption("IN", arguments->input, converter.input)
      .TypeName("")
      .Kind(FileValue())
      .Required();
  command.AddOption("-o,--output", arguments->output, "XML to write (default: standard output)")
      .TypeName("OUT")
      .Kind(FileValue());
  command.Footer(converter.footer);
  command.OnRun([&converter, arguments] { Convert(converter, *arguments); });
}

void AddGet(CommandEntry& xml) {
  const auto arguments = std::make_shared<ValueArguments>();
  CommandEntry command = xml.AddCommand("get", "Print one value of an XML-ini file");
  command.AddOption("FILE", arguments->file, "XML-ini, - for standard input")
      .TypeName("")
      .Kind(FileValue())
      .Required();
  command.AddOption("PATH", arguments->path, "SECTION/.../NAME of the value; a / in a name is \\/")
      .TypeName("")
      .Required();
  command.Footer("Example:\n  ravelin xml get scene.xml IMAGE/LINES");
  command.OnRun([arguments] { PrintValue(*arguments); });
}

}  // namespace

void AddXmlCommand(CommandEntry& program) {
  CommandEntry xml = program.AddCommand("xml", "Convert metadata to XML and read values of it");
  xml.RequireCommand();
  for (const Converter& converter : kConverters) AddConverter(xml, converter);
  AddGet(xml);
  xml.Footer("Example:\n  ravelin xml nasa-pvl scene_MTL.txt | ravelin xml get - IMAGE/LINES");
}

}  // namespace ravelin
