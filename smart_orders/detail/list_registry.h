// The shape every smart-order registry shares: an ordered map from a key (sync type or string)
// to a list, where a key may exist with an empty list (internal).
#pragma once

#include <map>
#include <vector>

namespace orderview {
namespace detail {

template <class Key, class Value, class List = std::vector<Value>>
class ListRegistry {
public:
    using Map = std::map<Key, List>;

    // The key's list, or null when the key has no entry.
    List* Find(const Key& key)
    {
        const auto it = lists_.find(key);
        return it == lists_.end() ? nullptr : &it->second;
    }
    const List* Find(const Key& key) const
    {
        const auto it = lists_.find(key);
        return it == lists_.end() ? nullptr : &it->second;
    }
    // The key's list, created empty when missing.
    List& Get(const Key& key) { return lists_[key]; }
    // A copy of the key's list; empty when the key is unknown.
    List Copy(const Key& key) const
    {
        const List* list = Find(key);
        return list ? *list : List();
    }
    // True when the key has an entry with a non-empty list.
    bool HasItems(const Key& key) const
    {
        const List* list = Find(key);
        return list && !list->empty();
    }
    void Erase(const Key& key) { lists_.erase(key); }
    bool Empty() const { return lists_.empty(); }
    void Clear() { lists_.clear(); }
    const Map& All() const { return lists_; }

private:
    Map lists_;
};

// Removes the first element equal to `value`; true when one was removed.
template <class List, class T>
bool EraseFirst(List& list, const T& value)
{
    for (auto it = list.begin(); it != list.end(); ++it) {
        if (*it == value) {
            list.erase(it);
            return true;
        }
    }
    return false;
}

}  // namespace detail
}  // namespace orderview
