#include "host/XmlCommand.h"

#include <memory>
#include <string>

#include "host/TextEncoding.h"
#include "host/TextInput.h"
#include "host/TextOutput.h"
#include "host/ValueKind.h"
#include "host/XmlConversion.h"
#include "host/XmlValue.h"

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

void AddConverter(CLI::App& xml, const Converter& converter) {
  const auto arguments = std::make_shared<ConversionArguments>();
  CLI::App* command = xml.add_subcommand(converter.name, converter.description);
  command->add_option("IN", arguments->input, converter.input)
      ->type_name("")
      ->check(FileValue())
      ->required();
  command->add_option("-o,--output", arguments->output, "XML to write (default: standard output)")
      ->type_name("OUT")
      ->check(FileValue());
  command->footer(converter.footer);
  command->callback([&converter, arguments] { Convert(converter, *arguments); });
}

void AddGet(CLI::App& xml) {
  const auto arguments = std::make_shared<ValueArguments>();
  CLI::App* command = xml.add_subcommand("get", "Print one value of an XML-ini file");
  command->add_option("FILE", arguments->file, "XML-ini, - for standard input")
      ->type_name("")
      ->check(FileValue())
      ->required();
  command
      ->add_option("PATH", arguments->path, "SECTION/.../NAME of the value; a / in a name is \\/")
      ->type_name("")
      ->required();
  command->footer("Example:\n  ravelin xml get scene.xml IMAGE/LINES");
  command->callback([arguments] { PrintValue(*arguments); });
}

}  // namespace

void AddXmlCommand(CLI::App& app) {
  CLI::App* xml = app.add_subcommand("xml", "Convert metadata to XML and read values of it");
  xml->require_subcommand(1);
  for (const Converter& converter : kConverters) AddConverter(*xml, converter);
  AddGet(*xml);
  xml->footer("Example:\n  ravelin xml nasa-pvl scene_MTL.txt | ravelin xml get - IMAGE/LINES");
}

}  // namespace ravelin
