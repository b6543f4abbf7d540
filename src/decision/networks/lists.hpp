// Lists of numbers, one after another in one array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace numcore::networks {

using Number = std::int32_t;  // a node, a state or a clique, from 0

class Lists {
  public:
    std::size_t count() const { return starts_.size() - 1; }
    std::span<const Number> operator[](std::size_t i) const {
        return std::span(items_).subspan(starts_[i], starts_[i + 1] - starts_[i]);
    }
    std::span<const Number> operator[](Number i) const { return (*this)[static_cast<std::size_t>(i)]; }
    std::size_t totalItems() const { return items_.size(); }

    void append(std::span<const Number> list) {
        items_.insert(items_.end(), list.begin(), list.end());
        starts_.push_back(items_.size());
    }

  private:
    std::vector<Number> items_;
    std::vector<std::size_t> starts_{0};
};

/// For each of n numbers the lists that hold it, ascending.
Lists listsHolding(const Lists& lists, std::size_t n);

/// Members that two ascending lists share.
std::vector<Number> sharedMembers(std::span<const Number> a, std::span<const Number> b);

/// True when every member of an ascending list is in another one.
bool isSubset(std::span<const Number> part, std::span<const Number> whole);

}  // namespace numcore::networks
