#pragma once

#include <algorithm>
#include <memory>
#include <unordered_map>

namespace Orvane {

/// Objects that all who ask with an equal key share. An object lives as long as somebody holds it; the table
/// itself keeps none alive. An object and its maker must not use the table on the way.
template <class Key, class Value, class Hash = std::hash<Key>>
class SharedTable
{
public:
    /// The object for \a key, made by \a make (which gives a `std::unique_ptr<Value>`) when nobody holds one.
    template <class Make>
    std::shared_ptr<Value> get(const Key& key, Make make)
    {
        const auto found = _entries->find(key);
        if (found != _entries->end())
            return found->second.lock();
        const auto entry = _entries->try_emplace(key).first;
        // The deleter holds the entries too: objects may outlive the table when the process ends.
        std::shared_ptr<Value> value(make().release(),
                                     [entries = _entries, known = &entry->first](Value* dying) {
                                         forget(*entries, *known);
                                         delete dying;
                                     });
        entry->second = value;
        return value;
    }

    std::size_t size() const { return _entries->size(); }

private:
    using Entries = std::unordered_map<Key, std::weak_ptr<Value>, Hash>;

    static void forget(Entries& entries, const Key& known)
    {
        auto entry = entries.find(known);
        // A key with a number that is none equals nothing, not even itself.
        if (entry == entries.end())
            entry = std::find_if(entries.begin(), entries.end(),
                                 [&known](const auto& each) { return &each.first == &known; });
        entries.erase(entry);
    }

    std::shared_ptr<Entries> _entries = std::make_shared<Entries>();
};

} // namespace Orvane
