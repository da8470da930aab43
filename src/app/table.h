// One-based tables for the model.
//
// Every table of the model is numbered from 1, as engineers and the file format number them. A
// table's count is its size: there is no second count to keep in step. Growth happens by one
// entry at the end (`add`), removal moves the later entries up one place (`remove`).
#pragma once

#include <cassert>
#include <cstddef>
#include <vector>

namespace pvx {

template <class T>
class Table {
 public:
  Table() = default;
  Table(std::initializer_list<T> items) : items_(items) {}

  int count() const { return static_cast<int>(items_.size()); }
  bool empty() const { return items_.empty(); }

  // Entry i, 1 <= i <= count().
  T& operator[](int i) {
    assert(i >= 1 && i <= count());
    return items_[static_cast<std::size_t>(i - 1)];
  }
  const T& operator[](int i) const {
    assert(i >= 1 && i <= count());
    return items_[static_cast<std::size_t>(i - 1)];
  }
  bool valid(int i) const { return i >= 1 && i <= count(); }

  // Resizing keeps the first entries; new entries are value-initialised or copies of `fill`.
  void resize(int n) { items_.resize(n > 0 ? static_cast<std::size_t>(n) : 0); }
  void resize(int n, const T& fill) { items_.resize(n > 0 ? static_cast<std::size_t>(n) : 0, fill); }
  void reserve(int n) { items_.reserve(n > 0 ? static_cast<std::size_t>(n) : 0); }
  void clear() { items_.clear(); }

  // Appends one entry and returns its number.
  int add(const T& item) {
    items_.push_back(item);
    return count();
  }
  // Removes entry i; later entries move up one place.
  void remove(int i) {
    assert(valid(i));
    items_.erase(items_.begin() + (i - 1));
  }
  T& last() { return items_.back(); }
  const T& last() const { return items_.back(); }

  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  std::vector<T>& data() { return items_; }
  const std::vector<T>& data() const { return items_; }

  bool operator==(const Table&) const = default;

 private:
  std::vector<T> items_;
};

// A fixed-size array numbered from 1, for the corner and equation numbers of one record.
template <class T, int N>
struct Array1 {
  T v[N]{};
  T& operator[](int i) {
    assert(i >= 1 && i <= N);
    return v[i - 1];
  }
  const T& operator[](int i) const {
    assert(i >= 1 && i <= N);
    return v[i - 1];
  }
  static constexpr int size() { return N; }
  T* begin() { return v; }
  T* end() { return v + N; }
  const T* begin() const { return v; }
  const T* end() const { return v + N; }
  bool operator==(const Array1&) const = default;
};

}  // namespace pvx
