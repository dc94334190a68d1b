#include <stdexcept>

#include "SatCommonUtils/Metadata.h"
#include "SatCommonUtils/Text.h"
#include "SatCommonUtils/Tree.h"
#include "bench/instructions/Jobs.h"

namespace RavelinBench {
namespace {

using namespace SatCommonUtils;
using TStream = var_a_legacy::var_a<TKvStream*>;
using TWork = std::function<void()>;

std::string Repeated(int count, const std::string& before, const std::string& after) {
  std::string text;
  for (int i = 0; i < count; ++i) text.append(before).append(std::to_string(i)).append(after);
  return text;
}

void Check(bool done) {
  if (!done) throw std::runtime_error("the work was refused");
}

TWork NasaPvl() {
  const TStream in(new TKvMemoryStream("GROUP = A\n" + Repeated(3000, "  KEY_", " = \"value\"\n") +
                                       "END_GROUP = A\nEND\n"));
  return [=] { Check(NASA_PVLtoXML(in, TStream(new TKvMemoryStream))); };
}

/// Quotes that nothing closes.
TWork HostilePvl() {
  const TStream in(new TKvMemoryStream(Repeated(10000, "a = \"", ";\n")));
  return [=] { Check(PVLtoXML(in, TStream(new TKvMemoryStream))); };
}

TWork Wkt() {
  const std::string wkt = "ALL[\"all\"" + Repeated(4000, ",AXIS[\"Easting ", "\",EAST]") + "]";
  return [=] {
    std::string xml;
    Check(WktSectionToXml(wkt, &xml));
  };
}

std::string TreeText() {
  std::string text = "(1,0)Product\n";
  for (int i = 0; i < 4000; ++i) {
    text.append("(").append(std::to_string(i)).append(",0)[1]Parameter\tvalue\n");
  }
  return text + "\n";
}

TWork TreeOfText() {
  return [text = TreeText()] {
    TStringTree tree(0, 0, nullptr, "");
    tree.ReadFromString(text.c_str(), nullptr, nullptr);
    Check(WriteTreeToString(tree) == text);
  };
}

void WriteXml(const TStringTree& tree, const TStream& stream) {
  TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
  Check(tree.WriteToXML(&writer) && writer.Close());
}

TWork TreeOfXml() {
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString(TreeText().c_str(), nullptr, nullptr);
  const TStream stream(new TKvMemoryStream);
  WriteXml(tree, stream);
  return [=] {
    TKvXIniReader reader(stream);
    TStringTree read(0, 0, nullptr, "");
    Check(read.ReadFromXML(&reader, 0, nullptr));
  };
}

TWork Numbers() {
  return [text = Repeated(20000, "12.75", " ")] {
    std::vector<double> numbers;
    SplitStringIntoDoubles(text.c_str(), " ", &numbers, nullptr);
    Check(numbers.size() >= 20000);
  };
}

}  // namespace

std::vector<TCountedJob> TextJobs() {
  return {{"nasa_pvl", NasaPvl},     {"pvl_hostile", HostilePvl}, {"wkt", Wkt},
          {"tree_text", TreeOfText}, {"tree_of_xml", TreeOfXml},  {"numbers", Numbers}};
}

}  // namespace RavelinBench
