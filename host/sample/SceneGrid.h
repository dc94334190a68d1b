// A rectangle of cells, the top row first.
#pragma once

#include <cstddef>
#include <vector>

namespace ravelin {

template <class T>
class SceneGrid {
 public:
  SceneGrid() = default;
  SceneGrid(int width, int height)
      : width_(width),
        height_(height),
        cells_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

  int Width() const { return width_; }
  int Height() const { return height_; }
  std::size_t Size() const { return cells_.size(); }

  bool Contains(int x, int y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
  }

  T& operator()(int x, int y) { return cells_[Index(x, y)]; }
  const T& operator()(int x, int y) const { return cells_[Index(x, y)]; }
  T& operator[](std::size_t index) { return cells_[index]; }
  const T& operator[](std::size_t index) const { return cells_[index]; }

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<T> cells_;
};

}  // namespace ravelin
