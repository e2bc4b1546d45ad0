// The containers of the GSD model: singly linked circular lists that remember their last node. Nodes and elements live
// in the model's arena.

#pragma once

#include "generator/arena.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace typdescriptor::internal {

template <class Element>
struct GSD_LIST_NODE {
    GSD_LIST_NODE* next; // of the last node: the first
    Element element;
};

template <class Element>
class GSD_LIST {
public:
    using Node = GSD_LIST_NODE<Element>;

    class iterator {
    public:
        iterator(Node* at, Node* end) : node(at), last(end) {}
        Element& operator*() const { return node->element; }
        iterator& operator++()
        {
            node = node == last ? nullptr : node->next;
            return *this;
        }
        bool operator==(const iterator& other) const { return node == other.node; }

    private:
        Node* node;
        Node* last;
    };

    /// Appends an element; throws std::bad_alloc and leaves the list as it is when memory is exhausted.
    Element& append(Arena& arena, const Element& element)
    {
        Node* node = arena.make<Node>(nullptr, element);
        node->next = tail == nullptr ? node : tail->next;
        if (tail != nullptr)
            tail->next = node;
        tail = node;
        ++used;
        return node->element;
    }

    std::size_t count() const { return used; }
    bool empty() const { return used == 0; }
    Element& first() const { return tail->next->element; }

    iterator begin() const { return {tail == nullptr ? nullptr : tail->next, tail}; }
    iterator end() const { return {nullptr, tail}; }

private:
    Node* tail = nullptr;
    std::uint32_t used = 0;
};

/// A list whose elements are looked up by their 16-bit `reference`. References need not be unique: the first wins.
template <class Element>
class GSD_REFERENCE_LIST : public GSD_LIST<Element> {
public:
    Element& append(Arena& arena, const Element& element)
    {
        Page*& page = pages[element.reference >> 8];
        if (page == nullptr)
            page = arena.make<Page>();
        Element& added = GSD_LIST<Element>::append(arena, element);
        Element*& first = (*page)[element.reference & 0xFF];
        if (first == nullptr)
            first = &added;
        return added;
    }

    /// The first element whose reference equals the low 16 bits of `reference`; null when there is none.
    Element* find(std::uint32_t reference) const
    {
        const Page* page = pages[reference >> 8 & 0xFF];
        return page == nullptr ? nullptr : (*page)[reference & 0xFF];
    }

private:
    // Pages of 256 references, made when the first of them is used.
    using Page = std::array<Element*, 256>;
    std::array<Page*, 256> pages{};
};

} // namespace typdescriptor::internal
