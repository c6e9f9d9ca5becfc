#include "dialog/traversal.h"

#include <cstddef>

#include "platform/accessibility.h"

namespace tessarine {
namespace {

constexpr int mostAncestors = 24;

struct QueueEntry {
  NodeRef node;
  int depth;
};

bool isFull(std::size_t size, int maxNodes) {
  return static_cast<std::ptrdiff_t>(size) >= maxNodes;
}

}  // namespace

std::vector<NodeRef> breadthFirstNodes(const Element& root, int maxDepth, int maxNodes) {
  std::vector<NodeRef> nodes;
  std::vector<QueueEntry> queue{{{root, {}}, 0}};
  for (std::size_t head = 0; head < queue.size() && !isFull(nodes.size(), maxNodes); ++head) {
    const QueueEntry entry = queue[head];
    nodes.push_back(entry.node);
    if (entry.depth >= maxDepth) continue;
    for (const Element& child : axChildren(entry.node.element)) {
      if (isFull(queue.size(), maxNodes)) break;
      queue.push_back({{child, entry.node.element}, entry.depth + 1});
    }
  }
  return nodes;
}

std::vector<NodeRef> descendants(const Element& root, int maxDepth, int maxNodes) {
  return breadthFirstNodes(root, maxDepth, maxNodes);
}

std::optional<NodeRef> findFirst(const Element& root, const NodePredicate& predicate) {
  for (const NodeRef& node : descendants(root)) {
    if (predicate(node.element, node.parent)) return node;
  }
  return {};
}

void collectNodes(const Element& element, const std::optional<Element>& parent,
                  std::vector<NodeRef>& nodes) {
  nodes.push_back({element, parent});
  for (const Element& child : axChildren(element)) collectNodes(child, element, nodes);
}

void collectNodesLimited(const Element& element, const std::optional<Element>& parent, int depth,
                         int maxDepth, int maxNodes, std::vector<NodeRef>& nodes) {
  if (isFull(nodes.size(), maxNodes)) return;
  nodes.push_back({element, parent});
  if (depth >= maxDepth) return;
  for (const Element& child : axChildren(element)) {
    if (isFull(nodes.size(), maxNodes)) return;
    collectNodesLimited(child, element, depth + 1, maxDepth, maxNodes, nodes);
  }
}

std::vector<NodeRef> ancestorChain(const NodeRef& node) {
  std::vector<NodeRef> chain{node};
  std::optional<Element> current = node.parent;
  for (int i = 0; i < mostAncestors && current; ++i) {
    const std::optional<Element> parent = axParent(*current);
    chain.push_back({*current, parent});
    current = parent;
  }
  return chain;
}

}  // namespace tessarine
