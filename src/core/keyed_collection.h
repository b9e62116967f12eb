// An ordered collection of values under text keys, as the platform's Collection: entries
// stay in insertion order, keys match without regard to (ASCII) case, a key is unique.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/vb_error.h"

namespace kiv {

template <class T>
class KeyedCollection {
 public:
  struct Entry {
    std::string key;  // as it was added
    T value;
  };
  using iterator = typename std::vector<Entry>::iterator;
  using const_iterator = typename std::vector<Entry>::const_iterator;

  //! Appends a value; a key already present (in any case) raises error 457 and changes nothing.
  void Add(std::string key, T value) {
    std::string folded = Fold(key);
    if (index_.count(folded) != 0)
      throw VbError(kErrKeyExists, "This key is already associated with an element of this collection");
    index_.emplace(std::move(folded), entries_.size());
    entries_.push_back(Entry{std::move(key), std::move(value)});
  }

  //! The value under key, or null when there is none.
  T* Find(std::string_view key) {
    const auto it = index_.find(Fold(key));
    return it == index_.end() ? nullptr : &entries_[it->second].value;
  }
  const T* Find(std::string_view key) const {
    const auto it = index_.find(Fold(key));
    return it == index_.end() ? nullptr : &entries_[it->second].value;
  }
  bool Contains(std::string_view key) const { return Find(key) != nullptr; }

  //! The value under key; a missing key raises error 5, as the platform's collection does.
  T& Item(std::string_view key) {
    T* found = Find(key);
    if (!found) RaiseError(kErrInvalidCall);
    return *found;
  }
  const T& Item(std::string_view key) const {
    const T* found = Find(key);
    if (!found) RaiseError(kErrInvalidCall);
    return *found;
  }

  //! The entry at a 0-based position in insertion order; out of range raises error 9.
  Entry& At(size_t index) {
    if (index >= entries_.size()) RaiseError(kErrSubscript);
    return entries_[index];
  }
  const Entry& At(size_t index) const {
    if (index >= entries_.size()) RaiseError(kErrSubscript);
    return entries_[index];
  }

  //! Removes the entry under key; false when there is none.
  bool Remove(std::string_view key) {
    const auto it = index_.find(Fold(key));
    if (it == index_.end()) return false;
    EraseAt(it->second);
    return true;
  }
  //! Removes the oldest entry; false when the collection is empty.
  bool RemoveFirst() {
    if (entries_.empty()) return false;
    EraseAt(0);
    return true;
  }

  size_t Count() const { return entries_.size(); }
  bool Empty() const { return entries_.empty(); }
  void Clear() {
    entries_.clear();
    index_.clear();
  }

  iterator begin() { return entries_.begin(); }
  iterator end() { return entries_.end(); }
  const_iterator begin() const { return entries_.begin(); }
  const_iterator end() const { return entries_.end(); }

 private:
  static std::string Fold(std::string_view key) {
    std::string folded(key);
    for (char& c : folded)
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return folded;
  }

  // Positions after the removed one move down by one; the index follows them.
  void EraseAt(size_t position) {
    index_.erase(Fold(entries_[position].key));
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
    for (auto& [folded, at] : index_)
      if (at > position) --at;
  }

  std::vector<Entry> entries_;
  std::unordered_map<std::string, size_t> index_;
};

}  // namespace kiv
