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

void walk(const Element& root, const WalkLimits& limits, std::vector<std::string> attributes,
          const NodeVisitor& visit) {
  const AttributeNames asked(attributes);
  attributes.push_back("AXChildren");
  const AttributeNames askedWithChildren(attributes);
  std::vector<QueueEntry> queue{{{root, {}}, 0}};
  for (std::size_t head = 0; head < queue.size() && !isFull(head, limits.maxNodes); ++head) {
    const QueueEntry entry = queue[head];
    const bool opened = entry.depth < limits.maxDepth && !isFull(queue.size(), limits.maxNodes);
    const VisitedNode node(entry.node, entry.depth, static_cast<int>(head),
                           opened ? askedWithChildren : asked);
    if (visit(node)) return;
    if (!opened) continue;
    for (const Element& child : node.children()) {
      if (isFull(queue.size(), limits.maxNodes)) break;
      queue.push_back({{child, entry.node.element}, entry.depth + 1});
    }
  }
}

std::optional<NodeRef> firstNode(const Element& root, const WalkLimits& limits,
                                 const std::vector<std::string>& attributes,
                                 const NodeVisitor& fits) {
  std::optional<NodeRef> first;
  walk(root, limits, attributes, [&](const VisitedNode& node) {
    if (fits(node)) first = node.reference();
    return first.has_value();
  });
  return first;
}

std::vector<NodeRef> breadthFirstNodes(const Element& root, int maxDepth, int maxNodes) {
  std::vector<NodeRef> nodes;
  walk(root, {maxDepth, maxNodes}, {}, [&](const VisitedNode& node) {
    nodes.push_back(node.reference());
    return false;
  });
  return nodes;
}

std::vector<NodeRef> descendants(const Element& root, int maxDepth, int maxNodes) {
  return breadthFirstNodes(root, maxDepth, maxNodes);
}

std::optional<NodeRef> findFirst(const Element& root, const NodePredicate& predicate) {
  return firstNode(root, {8, 700}, {}, [&](const VisitedNode& node) {
    return predicate(node.element(), node.reference().parent);
  });
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

void walkAnswered(std::vector<Element> elements, const WalkLimits& limits,
                  const AnswerVisitor& visit) {
  std::size_t visited = 0;
  for (int depth = 0; depth <= limits.maxDepth && !elements.empty(); ++depth) {
    std::vector<Element> below;
    for (const Element& element : elements) {
      if (isFull(visited++, limits.maxNodes)) return;
      const Step step = visit(element, readText(element, "AXRole").value_or(""));
      if (step == Step::end) return;
      if (step == Step::past || depth == limits.maxDepth) continue;
      const auto children = readList(element);
      below.insert(below.end(), children.begin(), children.end());
    }
    elements = std::move(below);
  }
}

std::vector<NodeRef> ancestorChain(const NodeRef& node) {
  return climb(node, {}, [](const ElementValues&) { return false; });
}

std::vector<NodeRef> climb(const NodeRef& node, std::vector<std::string> attributes,
                           const ValueVisitor& visit) {
  std::vector<NodeRef> chain{node};
  const AttributeNames asked(attributes);
  if (visit(ElementValues(node.element, asked))) return chain;
  attributes.push_back("AXParent");
  const AttributeNames askedWithParent(attributes);
  std::optional<Element> current = node.parent;
  for (int i = 0; i < mostAncestors && current; ++i) {
    const ElementValues values(*current, askedWithParent);
    const std::optional<Element> parent = values.parent();
    chain.push_back({*current, parent});
    if (visit(values)) break;
    current = parent;
  }
  return chain;
}

}  // namespace tessarine
