#pragma once

#include <Orvane/Field.h>
#include <Orvane/NodeLink.h>
#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

namespace Orvane {

/// A field of many values that are objects of their own. The operations that change the list mark the field
/// as written now; `clear`, `elem` and `operator[]` do not.
template <class T, int Kind>
class ORVANE_API MLField : public Field
{
public:
    /// Made by the node, which is borrowed as its description is.
    MLField(Node* node, NodePartDesc* desc);
    ~MLField() override;

    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    /// Appends a value; the result is its place, valid until the list changes.
    T* addValue(const T& value);
    /// Inserts a value in front of \a index, which is brought into the list's range.
    T* insertValue(int index, const T& value);
    /// Removes a value; an index outside the list removes nothing.
    void removeValueByIndex(int index);
    /// The value at \a index, which must be inside the list.
    T& elem(int index) { return _values[static_cast<std::size_t>(index)].value; }
    T& operator[](int index) { return elem(index); }
    const T& operator[](int index) const { return _values[static_cast<std::size_t>(index)].value; }
    /// Replaces a value; an index outside the list replaces nothing.
    void setElem(int index, const T& value);

protected:
    /// A cell of its own, so that a list of truth values too has elements with an address.
    struct Cell
    {
        T value;
    };

    std::vector<Cell> _values;
};

/// A field of links to nodes. Links have a stable address inside the field: the list may grow and shrink
/// round them.
template <class T>
class ORVANE_API MLField<T, 1> : public Field
{
public:
    /// Goes over the links in order.
    class Iterator
    {
    public:
        /// What the standard library asks of iterators.
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = T*;
        using reference = T&;

        Iterator() = default;
        /// Made by `begin` and `end`; steps and compares as iterators do, and gives the link.
        explicit Iterator(T* const* position)
            : _position(position)
        {
        }
        T& operator*() const { return **_position; }
        T* operator->() const { return *_position; }
        Iterator& operator++()
        {
            ++_position;
            return *this;
        }
        Iterator operator++(int) { return Iterator(_position++); }
        Iterator& operator--()
        {
            --_position;
            return *this;
        }
        bool operator==(const Iterator& other) const { return _position == other._position; }
        bool operator!=(const Iterator& other) const { return _position != other._position; }

    private:
        T* const* _position = nullptr;
    };
    /// As containers call it.
    using iterator = Iterator;

    /// Made by the node, which is borrowed as its description is.
    MLField(Node* node, NodePartDesc* desc);
    ~MLField() override;

    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    /// The link at \a index, which must be inside the list.
    T& elem(int index) const { return *_links[static_cast<std::size_t>(index)]; }
    T& operator[](int index) const { return elem(index); }
    Iterator begin() const { return Iterator(_links.data()); }
    Iterator end() const { return Iterator(_links.data() + _links.size()); }

    /// Appends a link to \a node as of the time stamp. False when the node is null or of another context.
    bool addNode(const double& time, Node* node, CallerType caller);
    /// Inserts a link to \a node in front of \a index, as `addNode`.
    bool insertNode(const double& time, int index, Node* node, CallerType caller);
    /// Removes the link at \a index; false when there is none. A node that loses its last link dies.
    bool removeNode(const double& time, int index, CallerType caller);

protected:
    friend class FieldAccess;

    std::vector<T*> _links; ///< owned
};

extern template class MLField<bool, 0>;
extern template class MLField<std::string, 0>;
extern template class MLField<NodeLink, 1>;

} // namespace Orvane
