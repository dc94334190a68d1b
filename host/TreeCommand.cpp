#include "host/TreeCommand.h"

#include <memory>
#include <string>

#include "host/TextEncoding.h"
#include "host/TextInput.h"
#include "host/TextOutput.h"
#include "host/TreeConversion.h"
#include "host/TreeListing.h"
#include "host/ValueKind.h"

namespace ravelin {
namespace {

using SatCommonUtils::TStringTree;

constexpr unsigned long kLongestInput = 1UL << 28;

struct Arguments {
  std::string input;
  std::string output;
  std::string section = "tree";
  bool json = false;
};

void ReadText(const TextInput& input, TStringTree* tree) {
  ReadTreeText(DecodedText(input.text, input.name), input.name, tree);
}

void ReadXml(const TextInput& input, const std::string& section, TStringTree* tree) {
  // XML tells its encoding itself.
  RefuseUtf32(input.text, input.name);
  ReadTreeXml(input.text, section, input.name, tree);
}

void TextToXml(const Arguments& arguments) {
  TStringTree tree(0, 0, nullptr, {});
  ReadText(ReadTextInput(arguments.input, kLongestInput), &tree);
  WriteTextOutput(TreeXml(tree, arguments.section), arguments.output);
}

void XmlToText(const Arguments& arguments) {
  TStringTree tree(0, 0, nullptr, {});
  const TextInput input = ReadTextInput(arguments.input, kLongestInput);
  ReadXml(input, arguments.section, &tree);
  WriteTextOutput(TreeText(tree, input.name), arguments.output);
}

void Show(const Arguments& arguments) {
  TStringTree tree(0, 0, nullptr, {});
  const TextInput input = ReadTextInput(arguments.input, kLongestInput);
  if (IsTreeText(DecodedText(input.text, input.name))) {
    ReadText(input, &tree);
  } else {
    ReadXml(input, arguments.section, &tree);
  }
  const std::string listing = arguments.json ? TreeJson(tree, input.name) : TreeListing(tree);
  WriteTextOutput(listing, arguments.output);
}

/// One thing that is done with a tree, and how its subcommand is described.
struct Job {
  const char* name;
  const char* description;
  const char* input;
  const char* output;
  const char* section;
  const char* footer;
  void (*run)(const Arguments&);
};

constexpr Job kTextToXml = {"text2xml",
                            "Convert a tree from indented text to XML-ini",
                            "Tree as text, - for standard input",
                            "XML to write (default: standard output)",
                            "Section that holds the tree; empty for the root",
                            "Example:\n  ravelin tree text2xml product.txt -o product.xml",
                            TextToXml};
constexpr Job kXmlToText = {"xml2text",
                            "Convert a tree from XML-ini to indented text",
                            "XML-ini, - for standard input",
                            "Text to write (default: standard output)",
                            "Section that holds the tree; empty for the root",
                            "Example:\n  ravelin tree xml2text product.xml -o product.txt",
                            XmlToText};
constexpr Job kShow = {"show",
                       "List what a tree of either form holds",
                       "Tree as text or XML-ini, - for standard input",
                       "Listing to write (default: standard output)",
                       "Section of XML that holds the tree; empty for the root",
                       "Example:\n  ravelin tree show product.xml",
                       Show};

void AddJob(CLI::App& tree, const Job& job) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* command = tree.add_subcommand(job.name, job.description);
  command->add_option("IN", arguments->input, job.input)
      ->type_name("")
      ->check(FileValue())
      ->required();
  command->add_option("-o,--output", arguments->output, job.output)
      ->type_name("OUT")
      ->check(FileValue());
  command->add_option("--section", arguments->section, job.section)
      ->type_name("NAME")
      ->capture_default_str();
  if (job.run == Show) command->add_flag("--json", arguments->json, "Write JSON instead of text");
  command->footer(job.footer);
  command->callback([&job, arguments] { job.run(*arguments); });
}

}  // namespace

void AddTreeCommand(CLI::App& app) {
  CLI::App* tree = app.add_subcommand("tree", "Convert and list trees of tagged metadata");
  tree->require_subcommand(1);
  for (const Job* job : {&kTextToXml, &kXmlToText, &kShow}) AddJob(*tree, *job);
  tree->footer("Example:\n  ravelin tree text2xml product.txt | ravelin tree show -");
}

}  // namespace ravelin
