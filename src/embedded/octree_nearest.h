#pragma once

#include <limits>

#include "embedded/octree_points.h"

namespace orvmesh::embedded {

// What nanoflann keeps of several equally far points are those that the tree shows first. These result sets
// keep the lowest numbers.

// A branch that lies no farther than this may hold an equally far point, and so may a point below it: above
// the worst distance by more than a branch's distance can be off by rounding. The sets decide themselves.
inline double limitAbove(double square) {
  return square + square * 1e-13 + std::numeric_limits<double>::min();
}

// The two nearest points: what nearly everyone asks for.
class NearestTwo {
 public:
  explicit NearestTwo(const OctreePoints& points) : points_(points) {}

  double worstDist() const { return limit_; }
  bool full() const { return true; }
  bool addPoint(double square, std::uint32_t place) {
    for (int number = points_.lowestNumberAt(place); number != 0 && add(square, number);)
      number = points_.nextNumber(number);
    return true;
  }
  // The nearest `count` of them, from places 0 on.
  void copyTo(int count, int* numbers, double* squares) const {
    for (int i = 0; i < count; ++i) {
      numbers[i] = number_[i];
      squares[i] = square_[i];
    }
  }

 private:
  bool isBefore(double square, int number, int place) const {
    return square < square_[place] || (square == square_[place] && number < number_[place]);
  }
  bool add(double square, int number) {
    if (!isBefore(square, number, 1)) return false;
    const bool isFirst = isBefore(square, number, 0);
    square_[1] = isFirst ? square_[0] : square;
    number_[1] = isFirst ? number_[0] : number;
    if (isFirst) {
      square_[0] = square;
      number_[0] = number;
    }
    limit_ = limitAbove(square_[1]);
    return true;
  }

  static constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const OctreePoints& points_;
  double limit_ = kInfinity;
  double square_[2] = {kInfinity, kInfinity};
  int number_[2] = {0, 0};
};

// Any number of nearest points, kept in the caller's arrays.
class NearestPoints {
 public:
  NearestPoints(const OctreePoints& points, int capacity, int* numbers, double* squares)
      : points_(points), capacity_(capacity), numbers_(numbers), squares_(squares) {}

  double worstDist() const { return limit_; }
  bool full() const { return count_ == capacity_; }
  bool addPoint(double square, std::uint32_t place) {
    for (int number = points_.lowestNumberAt(place); number != 0 && add(square, number);)
      number = points_.nextNumber(number);
    return true;
  }

 private:
  bool isWorse(int at, double square, int number) const {
    return squares_[at] > square || (squares_[at] == square && numbers_[at] > number);
  }
  bool add(double square, int number) {
    if (full() && !isWorse(capacity_ - 1, square, number)) return false;
    int at = full() ? capacity_ - 1 : count_++;
    for (; at > 0 && isWorse(at - 1, square, number); --at) {
      squares_[at] = squares_[at - 1];
      numbers_[at] = numbers_[at - 1];
    }
    squares_[at] = square;
    numbers_[at] = number;
    if (full()) limit_ = limitAbove(squares_[capacity_ - 1]);
    return true;
  }

  const OctreePoints& points_;
  int capacity_, count_ = 0;
  int* numbers_;
  double* squares_;
  double limit_ = std::numeric_limits<double>::infinity();
};

}  // namespace orvmesh::embedded
