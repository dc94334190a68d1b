#include "host/scene/SceneRun.h"

#include <algorithm>
#include <functional>
#include <new>
#include <utility>

#include "SatCommonUtils/Tree.h"
#include "host/HostError.h"
#include "host/ProgressBar.h"
#include "host/io/MakeFolder.h"
#include "host/raster/InterleavedFile.h"
#include "host/raster/Picture.h"
#include "host/scene/Footprint.h"
#include "host/scene/Projection.h"
#include "host/scene/ReducedRaster.h"
#include "host/scene/SceneLog.h"
#include "host/scene/SceneRaster.h"
#include "host/scene/SceneTree.h"
#include "host/tree/TreeConversion.h"

namespace ravelin {
namespace {

using SatCommonUtils::TBasePushbroomDibData;
using SatCommonUtils::TSatLog;
using SatCommonUtils::TStringTree;

constexpr const char* kLogName = "ravelin.log";
constexpr long kMostRowSamples = 128L << 20;

std::string LogText(const TSatLog& log) {
  TKvMemoryStream stream;
  if (!log.SaveToStream(&stream)) throw std::bad_alloc();
  return stream.Bytes();
}

AreaReader WholeOf(TBasePushbroomDibData& raster, const std::string& name) {
  return {raster, 0, {0, 0, raster.width, raster.height}, name};
}

class SceneRun {
 public:
  SceneRun(const SceneJob& job, const SceneOptions& options, std::ostream* terminal)
      : job_(job), options_(options), terminal_(terminal) {
    report_.folder = job.folder;
    report_.output = job.output;
  }

  SceneReport Run() {
    report_.error = ErrorOf([this] { Work(); });
    if (!report_.error.empty()) LeaveLog();
    TakeWarnings();
    return std::move(report_);
  }

 private:
  /// What a step failed with; empty when it is done.
  static std::string ErrorOf(const std::function<void()>& step) {
    try {
      step();
      return "";
    } catch (const std::bad_alloc&) {
      return "memory: there is not enough; close other programs or raise the limit on memory";
    } catch (const std::exception& error) {
      return error.what();
    }
  }

  void Work() {
    const ProductFolder folder(job_.folder);
    MakeFolder(job_.output);
    outputMade_ = true;
    LogInfo(&log_, "scene: " + folder.Path());
    const LabelFile label = TakeLabel(folder);
    const std::string xml = LabelXml(label);
    const SceneDescription scene = Describe(label, xml);
    raster_ = OpenScene(scene, folder, &log_);
    SceneOutput output(job_.output);
    AddQuicklook(output);
    output.AddBytes("metadata.xml", xml);
    const std::optional<Projection> projection =
        FindProjection(folder, scene.projectionFile, &log_);
    if (projection) AddProjection(*projection, output);
    const std::optional<Footprint> footprint = MakeFootprint(scene, projection, &log_);
    if (footprint) AddFootprint(*footprint, output);
    AddTree(output);
    Commit(output);
  }

  /// A label that is named may lie anywhere, one that is found must not be a link that leads out.
  std::string LabelPath(const ProductFolder& folder) const {
    if (options_.label.starts_with('/')) return options_.label;
    if (!options_.label.empty()) return folder.Path() + "/" + options_.label;
    const std::string name = FindLabel(folder.Path());
    return folder.Find(name).value_or(folder.Path() + "/" + name);
  }

  LabelFile TakeLabel(const ProductFolder& folder) {
    const std::string path = LabelPath(folder);
    LabelFile label = ReadLabel(path, options_.dialect);
    report_.label = path;
    report_.dialect = DialectName(label.dialect);
    LogInfo(&log_, "label: " + path);
    LogInfo(&log_, "dialect: " + report_.dialect + ", " + label.reason);
    return label;
  }

  SceneDescription Describe(const LabelFile& label, const std::string& xml) {
    const std::vector<LabelGroup> groups = ReadLabelValues(xml, label.path);
    const LabelScopes scopes = SortLabel(groups, options_.mappings, label.path);
    SceneDescription scene = DescribeScene(scopes, options_, label.path, &log_);
    report_.size = scene.size;
    report_.tiles = scene.tiles;
    report_.degrees = scene.degrees;
    report_.metres = scene.metres;
    channelBands_ = scene.bands;
    return scene;
  }

  /// Writes the quicklook and, when asked for, the pixels, and counts the samples on the way.
  void AddQuicklook(SceneOutput& output) {
    SceneStatistics statistics(raster_.raster->bandsCount);
    if (options_.pixels) AddPixels(output, statistics);
    const auto shown = ShownRaster();
    AreaReader area = WholeOf(*shown, output.PathOf("quicklook.png"));
    report_.allCounted = options_.pixels || shown == raster_.raster;
    if (!options_.pixels) Count(area, statistics);
    TakeChannels(statistics.Results());
    PictureOptions options;
    for (const SceneChannel& channel : report_.channels) {
      if (options.limits.size() == static_cast<std::size_t>(ShownChannels(area.Channels()))) break;
      options.limits.push_back({channel.statistics.dark, channel.statistics.bright});
    }
    WritePicture(area, options, output.Add("quicklook.png"), output.PathOf("quicklook.png"),
                 terminal_);
  }

  var_a_legacy::var_a<TBasePushbroomDibData*> ShownRaster() {
    const ImageSize reduced =
        options_.full ? report_.size : ReducedSize(report_.size, kQuicklookSide);
    report_.quicklook = reduced;
    if (reduced.width == report_.size.width && reduced.height == report_.size.height) {
      return raster_.raster;
    }
    CheckRow();
    LogInfo(&log_, "quicklook: reduced to " + ToText(reduced) + " pixels");
    return var_a_legacy::var_a<ReducedRaster*>(new ReducedRaster(raster_.raster, reduced));
  }

  /// A reduced quicklook holds one row of all bands in memory.
  void CheckRow() const {
    const TBasePushbroomDibData& raster = *raster_.raster;
    if (raster.width <= kMostRowSamples / raster.bandsCount) return;
    throw HostError(job_.folder,
                    "a row of " + std::to_string(raster.width) + " pixels and " +
                        std::to_string(raster.bandsCount) + " bands is longer than " +
                        std::to_string(kMostRowSamples) + " samples",
                    "choose fewer bands with --band");
  }

  void Count(AreaReader& area, SceneStatistics& statistics) {
    ProgressBar bar(terminal_, static_cast<unsigned long>(area.Height()));
    const auto count = [&](const std::uint16_t* samples, long rows) {
      statistics.Add(samples, rows * area.Width());
    };
    area.ReadBlocks(count, &bar);
  }

  void AddPixels(SceneOutput& output, SceneStatistics& statistics) {
    std::vector<std::string> names;
    for (const int key : raster_.keys) names.push_back(BandName(key));
    AreaReader area = WholeOf(*raster_.raster, output.PathOf("pixels.bip"));
    const auto count = [&](const std::uint16_t* samples, long rows) {
      statistics.Add(samples, rows * area.Width());
    };
    PendingFile& header = output.Add("pixels.hdr");
    WriteInterleaved(area, names, output.Add("pixels.bip"), header, count, terminal_);
  }

  void TakeChannels(const std::vector<BandStatistics>& statistics) {
    for (std::size_t i = 0; i < statistics.size(); ++i) {
      const int key = raster_.keys[i];
      SceneChannel channel = {key, BandName(key), "", "", statistics[i]};
      const auto band = std::find_if(channelBands_.begin(), channelBands_.end(),
                                     [key](const SceneBand& b) { return b.key == key; });
      if (band != channelBands_.end()) {
        channel.name = band->name;
        channel.file = band->file;
        channel.order = OrderName(band->order);
      }
      report_.channels.push_back(channel);
      NoteEmpty(channel);
    }
  }

  void NoteEmpty(const SceneChannel& channel) {
    if (channel.statistics.count > 0) return;
    LogWarning(&log_, channel.name + ": all samples that were counted are 0");
  }

  void AddProjection(const Projection& projection, SceneOutput& output) {
    output.AddBytes("projection.xml", projection.xml);
    report_.projection = projection.path;
  }

  void AddTree(SceneOutput& output) {
    TStringTree tree(kSceneTag, 0, nullptr, "Scene");
    FillSceneTree(report_, &tree);
    output.AddBytes("scene.tree", SatCommonUtils::WriteTreeToString(tree));
    output.AddBytes("scene.xml", TreeXml(tree, "scene"));
  }

  void Commit(SceneOutput& output) {
    for (const SceneOutput::File& file : output.Files()) {
      LogInfo(&log_,
              "wrote " + output.PathOf(file.name) + ": " + std::to_string(file.bytes) + " bytes");
    }
    TSatLog log = log_;
    LogInfo(&log, "done");
    output.AddBytes(kLogName, LogText(log));
    Finish(output);
  }

  /// Nothing fails any more once the files are in place.
  void Finish(SceneOutput& output) {
    std::vector<SceneOutput::File> files = output.Files();
    output.Commit();
    report_.files = std::move(files);
  }

  /// The log of a scene that failed. That failing, too, is not told: the first error counts.
  void LeaveLog() {
    LogError(&log_, report_.error);
    if (!outputMade_) return;
    ErrorOf([this] {
      SceneOutput output(job_.output);
      output.AddBytes(kLogName, LogText(log_));
      Finish(output);
    });
  }

  void TakeWarnings() {
    std::vector<TSatLog::TLogDataItem> alarms;
    log_.GetAlarmMessages(&alarms);
    for (const TSatLog::TLogDataItem& alarm : alarms) {
      if (alarm.type != TSatLog::mtWarning) continue;
      report_.warnings.push_back(alarm.message.substr(0, alarm.message.size() - 1));
    }
  }

  const SceneJob& job_;
  const SceneOptions& options_;
  std::ostream* terminal_;
  SceneReport report_;
  TSatLog log_;
  bool outputMade_ = false;
  SceneRaster raster_;
  std::vector<SceneBand> channelBands_;
};

}  // namespace

SceneReport RunScene(const SceneJob& job, const SceneOptions& options, std::ostream* terminal) {
  return SceneRun(job, options, terminal).Run();
}

}  // namespace ravelin
