#include "apple_stubs/bodies/Stubs.h"

namespace wenlolib::tests::stubs {
namespace {

World theWorld;
int uncounted = 0;

}  // namespace

bool isWorldReady = false;

World& world() {
  return theWorld;
}

void reset() {
  theWorld = World();
  isWorldReady = true;
}

bool refused(const char* call) {
  if (uncounted > 0) return false;
  theWorld.calls.emplace_back(call);
  return theWorld.refusedCall == theWorld.calls.size() - 1;
}

Uncounted::Uncounted() {
  ++uncounted;
}

Uncounted::~Uncounted() {
  --uncounted;
}

}  // namespace wenlolib::tests::stubs
