// Writes the sample of a scene without content, which takes no time to make: write_sample DIR.
#include <iostream>

#include "host/HostError.h"
#include "host/sample/SampleCommand.h"

namespace {

ravelin::Scene EmptyScene() {
  ravelin::Scene scene;
  for (auto& band : scene) band = {ravelin::kSceneWidth, ravelin::kSceneHeight};
  return scene;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    ravelin::WriteSample(EmptyScene(), argv[1]);
    return 0;
  } catch (const ravelin::HostError& error) {
    std::cerr << "ravelin: " << error.what() << '\n';
    return 1;
  }
}
