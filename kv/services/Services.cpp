#include "Kv/Services.h"

#include <atomic>
#include <mutex>

#include "services/BusGuard.h"

namespace {

std::mutex transition;
std::atomic<bool> ready{false};

}  // namespace

void Init_KvServices() {
  const std::lock_guard<std::mutex> lock(transition);
  if (ready) return;
  kv::BusGuard::Install();
  ready = true;
}

void Deinit_KvServices() {
  const std::lock_guard<std::mutex> lock(transition);
  if (!ready) return;
  ready = false;
  kv::BusGuard::Remove();
}

bool KvServicesReady() {
  return ready;
}
