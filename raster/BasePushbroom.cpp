#include "SatCommonUtils/Raster.h"
#include "module/DebugPrint.h"
#include "raster/ChannelKinds.h"

namespace SatCommonUtils {
namespace {

/// The kind of a band; a band named twice takes the code of the earlier member.
int KindOfBand(long band, const TVisibleBandsOrder& order) {
  if (band == order.first) return kFirstVisible;
  if (band == order.second) return kSecondVisible;
  if (band == order.third) return kThirdVisible;
  return kOtherBand;
}

}  // namespace

TBasePushbroomDibData::TBasePushbroomDibData() : channels{1, 0, {}} {}
TBasePushbroomDibData::~TBasePushbroomDibData() = default;

const TKvDibChannels& TBasePushbroomDibData::Channels() const {
  return channels;
}

bool TBasePushbroomDibData::AllocReadData(long* /*pos*/, long* /*size*/) {
  return false;
}

unsigned short* TBasePushbroomDibData::GetReadBuffer() const {
  return nullptr;
}

bool TBasePushbroomDibData::SetVisibleBandsOrder(const TVisibleBandsOrder* order) {
  if (order == nullptr || bandsCount == 0 || bandsCount == 1) return false;
  if (order->first < 0 && order->second < 0 && order->third < 0) return false;
  // A negative number of bands is not refused: callers rely on it leaving no kinds.
  std::vector<int> kinds;
  for (long band = 0; band < bandsCount; ++band) kinds.push_back(KindOfBand(band, *order));
  channels.kinds.swap(kinds);
  return true;
}

bool TBasePushbroomDibData::SetChannelsBands(const std::vector<int>& kinds) {
  if (bandsCount < 0 || kinds.size() != static_cast<unsigned long>(bandsCount)) return false;
  channels.kinds = kinds;
  return true;
}

void TBasePushbroomDibData::DebugOutputChannels() const {
  KvPrintDbgMsg("--- DebugOutputChannels ---");
  for (const int kind : channels.kinds) KvPrintDbgMsg(ChannelKindToText(kind).c_str());
  KvPrintDbgMsg("-^- DebugOutputChannels -^-");
}

}  // namespace SatCommonUtils
