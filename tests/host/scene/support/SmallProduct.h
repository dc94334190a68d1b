// A small product to make scenes of.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/support/Samples.h"
#include "host/support/Subcommand.h"

/// In the folder `product` of a temporary folder: three bands of 4 x 3 pixels with a label.
class SmallProduct {
 public:
  SmallProduct() {
    folder_.MakeFolder("product");
    Write("blue.raw", BigBytes(blue));
    Write("green.raw", LittleBytes(green));
    Write("red.raw", BigBytes(red));
    Write("small.lbl", Label());
  }

  void Write(const std::string& name, const std::string& bytes) const {
    folder_.Write("product/" + name, bytes);
  }
  void Remove(const std::string& name) const {
    std::filesystem::remove(folder_ / ("product/" + name));
  }
  const TempFolder& Folder() const { return folder_; }

  static std::string Band(int number, const std::string& file, const std::string& rest) {
    const std::string group = "BAND_" + std::to_string(number);
    return "  GROUP = " + group + "\n    FILE_NAME = \"" + file + "\"\n" + rest +
           "  END_GROUP = " + group + "\n";
  }
  static std::string Label() {
    return "GROUP = SMALL\n  LINES = 3\n  LINE_SAMPLES = 4\n" +
           Band(1, "blue.raw", "SAMPLE_TYPE = MSB_UNSIGNED_INTEGER\nCHANNEL_KIND = 3\n") +
           Band(2, "green.raw", "SAMPLE_TYPE = LSB_UNSIGNED_INTEGER\nCHANNEL_KIND = 4\n") +
           Band(3, "red.raw", "SAMPLE_TYPE = MSB_UNSIGNED_INTEGER\nCHANNEL_KIND = 6\n") +
           "END_GROUP = SMALL\nEND\n";
  }

  /// `ravelin scene` with these arguments, beside the folder `product`.
  CommandResult Run(std::vector<std::string> arguments,
                    const std::function<void()>& prepare = {}) const {
    return RunSubcommand("scene", std::move(arguments), folder_, prepare);
  }

  const Samples blue = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  const Samples green = {101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, 112};
  const Samples red = {0, 202, 203, 204, 205, 206, 207, 208, 209, 210, 211, 212};

 private:
  TempFolder folder_;
};
