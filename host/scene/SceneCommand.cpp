#include "host/scene/SceneCommand.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/HostError.h"
#include "host/ProgressBar.h"
#include "host/UsageError.h"
#include "host/io/TextOutput.h"
#include "host/scene/SceneRun.h"
#include "host/scene/SceneSummary.h"

namespace ravelin {
namespace {

namespace fs = std::filesystem;

struct Arguments {
  std::vector<std::string> folders;
  std::string output;
  std::string label;
  std::string dialect;
  std::string size;
  std::string order;
  std::vector<std::string> bands;
  std::vector<std::string> mappings;
  bool pixels = false;
  bool full = false;
  bool json = false;
  bool quiet = false;
};

/// Reads every text of a list; what is wrong with one is wrong use of the option.
template <class T>
std::vector<T> ParseAll(const std::vector<std::string>& texts, const char* option,
                        T (*parse)(std::string_view)) {
  std::vector<T> all;
  try {
    for (const std::string& text : texts) all.push_back(parse(text));
  } catch (const std::invalid_argument& error) {
    throw UsageError(option, error.what());
  }
  return all;
}

void CheckKeys(const std::vector<BandChoice>& bands) {
  std::set<int> keys;
  for (const BandChoice& band : bands) {
    if (keys.insert(band.key).second) continue;
    throw UsageError("--band", "the key " + std::to_string(band.key) + " has a second file, " +
                                   band.file + ": give each band a key of its own");
  }
}

std::optional<ImageSize> SizeOf(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const std::optional<ImageSize> size = ParseSize(text);
  if (size) return size;
  throw UsageError(
      "--size", "'" + text + "' is not WxH in whole pixels from 1 to " + std::to_string(kMaxSide));
}

SceneOptions OptionsOf(const Arguments& arguments) {
  SceneOptions options;
  options.label = arguments.label;
  options.size = SizeOf(arguments.size);
  options.pixels = arguments.pixels;
  options.full = arguments.full;
  options.bands = ParseAll(arguments.bands, "--band", ParseBandChoice);
  options.mappings = ParseAll(arguments.mappings, "--map", ParseKeyMapping);
  CheckKeys(options.bands);
  options.dialect = ParseDialect(arguments.dialect);
  options.order = ParseOrderName(arguments.order);
  return options;
}

/// The path with links and ".." resolved as far as it is there, without a '/' at its end.
fs::path Resolved(const std::string& path) {
  std::error_code error;
  const fs::path resolved = fs::weakly_canonical(fs::absolute(path), error);
  const fs::path plain = error ? fs::absolute(path).lexically_normal() : resolved;
  return plain.has_filename() ? plain : plain.parent_path();
}

std::string OutputOf(const Arguments& arguments, const std::string& folder) {
  const bool several = arguments.folders.size() > 1;
  if (!arguments.output.empty() && !several) return arguments.output;
  const std::string name = Resolved(folder).filename().string();
  if (name.empty()) {
    throw UsageError(folder, "has no name to call the output after: give -o OUT");
  }
  return arguments.output.empty() ? name + "-ravelin" : arguments.output + "/" + name;
}

std::vector<SceneJob> JobsOf(const Arguments& arguments) {
  std::vector<SceneJob> jobs;
  std::map<fs::path, std::string> outputs;
  for (const std::string& folder : arguments.folders) {
    const std::string output = OutputOf(arguments, folder);
    const fs::path place = Resolved(output);
    if (place == Resolved(folder)) {
      throw UsageError(folder, "would be written into itself: give another -o OUT");
    }
    const auto [other, fresh] = outputs.emplace(place, folder);
    if (!fresh) {
      throw UsageError(folder, "would be written into " + output + " as " + other->second +
                                   " is: give each a call of its own");
    }
    jobs.push_back({folder, output});
  }
  return jobs;
}

void RunScenes(const Arguments& arguments) {
  const SceneOptions options = OptionsOf(arguments);
  const std::vector<SceneJob> jobs = JobsOf(arguments);
  std::vector<SceneReport> reports;
  std::size_t failed = 0;
  for (const SceneJob& job : jobs) {
    reports.push_back(RunScene(job, options, arguments.quiet ? nullptr : ProgressTerminal()));
    const SceneReport& report = reports.back();
    if (!arguments.json && !arguments.quiet) PrintText(SceneSummaryText(report));
    if (report.error.empty()) continue;
    ++failed;
    if (jobs.size() > 1) std::cerr << "ravelin: " << Printable(report.error) << std::endl;
  }
  if (arguments.json) PrintText(SceneSummary(reports).dump(2) + "\n");
  if (failed == 0) return;
  if (jobs.size() == 1) throw std::runtime_error(reports.front().error);
  throw HostError("scene",
                  std::to_string(failed) + " of " + std::to_string(jobs.size()) + " folders failed",
                  "see the messages above");
}

void AddInputOptions(CommandEntry& command, Arguments& arguments) {
  command.AddOption("FOLDER", arguments.folders, "Folder of a product; several are done in turn")
      .TypeName("")
      .Kind(FolderValue())
      .Required();
  command
      .AddOption("--label", arguments.label,
                 "Label in FOLDER (default: the only *_mtl.txt, *.lbl,\n"
                 "*.pvl, *.met or *label.txt there, in any case)")
      .TypeName("FILE");
  command
      .AddOption("--dialect", arguments.dialect,
                 "Dialect of the label: pvl or nasa (default: told by\n"
                 "its first BEGIN_GROUP or GROUP)")
      .TypeName("NAME")
      .Kind(ChoiceValue({DialectName(Dialect::kPvl), DialectName(Dialect::kNasa)}));
  command
      .AddOption("--map", arguments.mappings,
                 "Read the label's value KEY as the value NAME of\n"
                 "docs/scene.md")
      .TypeName("KEY=NAME");
  command.AddOption("--size", arguments.size, "Width and height of every band, pixels")
      .TypeName("WxH");
  command.AddOption("--order", arguments.order, "Byte order of every band: big or little")
      .TypeName("NAME")
      .Kind(
          ChoiceValue({OrderName(BytesOrder::boBigEndian), OrderName(BytesOrder::boLittleEndian)}));
  command
      .AddOption("--band", arguments.bands,
                 "What a file in FOLDER shows (red, green, blue or a\n"
                 "number), its name and byte order; the bands of the\n"
                 "label do not count then")
      .TypeName("KEY=FILE[:big|:little]");
}

void AddOutputOptions(CommandEntry& command, Arguments& arguments) {
  command
      .AddOption("-o,--output", arguments.output,
                 "Folder to write into; of several FOLDERs each into\n"
                 "one of its own in there (default: FOLDER's name with\n"
                 "-ravelin behind it)")
      .TypeName("OUT")
      .Kind(FolderValue());
  command.AddFlag("--pixels", arguments.pixels, "Write all pixels, too: pixels.bip with its .hdr");
  command.AddFlag("--full", arguments.full, "Do not reduce the quicklook to 2048 pixels a side");
  command.AddFlag("--json", arguments.json, "Print a summary in JSON instead of text");
  command.AddFlag("--quiet", arguments.quiet, "Print neither text nor progress");
}

}  // namespace

void AddSceneCommand(CommandEntry& program) {
  const auto arguments = std::make_shared<Arguments>();
  CommandEntry command = program.AddCommand("scene", "Make everything of a product folder");
  AddInputOptions(command, *arguments);
  AddOutputOptions(command, *arguments);
  command.Footer(
      "Writes a quicklook, the metadata and the projection as XML, the footprint as a\n"
      "shapefile, a tree of what was found and a log. FOLDER goes before --band and --map.\n\n"
      "Example:\n"
      "  ravelin scene demo/sample -o demo/scene");
  command.OnRun([arguments] { RunScenes(*arguments); });
}

}  // namespace ravelin
