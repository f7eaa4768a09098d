#include "base/NodeTable.h"
#include "base/ContextData.h"
#include <array>
#include <memory>

namespace Orvane::nodeTable {

namespace {

constexpr UInt64 pageSize = 512;

/// Nodes of consecutive ids.
struct Page
{
    std::array<Node*, pageSize> nodes{};
    unsigned int used = 0;
};

struct Table
{
    std::vector<std::unique_ptr<Page>> pages; ///< a page of which all nodes have died is given back
    UInt64 lastId = 0;
};

/// Never destroyed, so that nodes may die in the last destructors of the process.
Table& table()
{
    static Table* const the = new Table;
    return *the;
}

} // namespace

UInt64 add(Node& node)
{
    Table& all = table();
    const UInt64 id = ++all.lastId;
    const UInt64 page = id / pageSize;
    if (page >= all.pages.size())
        all.pages.resize(page + 1);
    if (!all.pages[page])
        all.pages[page] = std::make_unique<Page>();
    all.pages[page]->nodes[id % pageSize] = &node;
    ++all.pages[page]->used;
    return id;
}

void remove(UInt64 id)
{
    std::unique_ptr<Page>& page = table().pages[id / pageSize];
    page->nodes[id % pageSize] = nullptr;
    if (--page->used == 0)
        page.reset();
}

std::vector<Node*> nodesOf(const Context& context)
{
    std::vector<Node*> nodes;
    nodes.reserve(context.data()->nodeCount);
    for (const auto& page : table().pages)
        if (page)
            for (Node* node : page->nodes)
                if (node && node->data()->context == &context)
                    nodes.push_back(node);
    return nodes;
}

Node* find(UInt64 id)
{
    const Table& all = table();
    const UInt64 page = id / pageSize;
    return page < all.pages.size() && all.pages[page] ? all.pages[page]->nodes[id % pageSize] : nullptr;
}

} // namespace Orvane::nodeTable
