// Bounded walks over accessibility trees. The trees of a browser process are very large, and every
// visited element costs a request, so every walk is capped in depth and in nodes. Nothing here
// fails: an element whose children cannot be read is a leaf.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/element.h"

namespace tessarine {

// The elements below the root, itself first, level by level and in child order. The root has depth
// 0; children of elements at `maxDepth` are not read. No more than `maxNodes` elements are ever
// taken into the queue, so children beyond it are lost, later siblings first.
std::vector<NodeRef> breadthFirstNodes(const Element& root, int maxDepth = 8, int maxNodes = 1800);

// The same walk with a smaller default budget.
std::vector<NodeRef> descendants(const Element& root, int maxDepth = 8, int maxNodes = 700);

// The first node of descendants(root) for which the predicate, given the element and its parent,
// holds. The whole walk is made before anything is tested.
using NodePredicate = std::function<bool(const Element&, const std::optional<Element>&)>;
std::optional<NodeRef> findFirst(const Element& root, const NodePredicate& predicate);

// Appends the element and everything below it, each parent before its children; without a bound.
void collectNodes(const Element& element, const std::optional<Element>& parent,
                  std::vector<NodeRef>& nodes);

// The same within bounds: nothing is appended to a list of `maxNodes` entries, and children of
// elements at `maxDepth` are not read.
void collectNodesLimited(const Element& element, const std::optional<Element>& parent, int depth,
                         int maxDepth, int maxNodes, std::vector<NodeRef>& nodes);

// The node itself, then its ancestors upward, at most 25 entries.
std::vector<NodeRef> ancestorChain(const NodeRef& node);

}  // namespace tessarine
