// Bounded walks over accessibility trees. The trees of a browser process are very large, and every
// visited element costs a request, so every walk is capped in depth and in nodes, asks each element
// once for all that is to be known of it, and nothing after its end is known. Nothing here fails
// but walkAnswered: an element whose children cannot be read is a leaf.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/element.h"
#include "platform/element_values.h"

namespace tessarine {

// How far a walk goes. The root has depth 0; children of elements at `maxDepth` are not read. No
// more than `maxNodes` elements are ever taken into the queue, so children beyond it are lost,
// later siblings first.
struct WalkLimits {
  int maxDepth;
  int maxNodes;
};

// A node while a walk is at it, with what the walk asked for.
class VisitedNode : public ElementValues {
 public:
  VisitedNode(const NodeRef& node, int depth, int index, const AttributeNames& attributes)
      : ElementValues(node.element, attributes), node_(node), depth_(depth), index_(index) {}

  // What may be kept of it.
  const NodeRef& reference() const { return node_; }
  // Whether a walk from the same root within these limits visits it, too.
  bool isWithin(const WalkLimits& limits) const {
    return depth_ <= limits.maxDepth && index_ < limits.maxNodes;
  }
  // Whether that walk visits none after it in any case.
  bool isLastOf(const WalkLimits& limits) const { return index_ + 1 >= limits.maxNodes; }

 private:
  const NodeRef& node_;
  int depth_;
  int index_;
};

// Answers whether enough is known.
using NodeVisitor = std::function<bool(const VisitedNode&)>;
using ValueVisitor = std::function<bool(const ElementValues&)>;

// Visits the elements below the root, itself first, level by level and in child order, until the
// visitor knows enough.
void walk(const Element& root, const WalkLimits& limits, std::vector<std::string> attributes,
          const NodeVisitor& visit);

// The first node of that walk that fits.
std::optional<NodeRef> firstNode(const Element& root, const WalkLimits& limits,
                                 const std::vector<std::string>& attributes,
                                 const NodeVisitor& fits);

// All nodes of such a walk.
std::vector<NodeRef> breadthFirstNodes(const Element& root, int maxDepth = 8, int maxNodes = 1800);

// The same walk with a smaller default budget.
std::vector<NodeRef> descendants(const Element& root, int maxDepth = 8, int maxNodes = 700);

// The first node of descendants(root) for which the predicate, given the element and its parent,
// holds.
using NodePredicate = std::function<bool(const Element&, const std::optional<Element>&)>;
std::optional<NodeRef> findFirst(const Element& root, const NodePredicate& predicate);

// Appends the element and everything below it, each parent before its children; without a bound.
void collectNodes(const Element& element, const std::optional<Element>& parent,
                  std::vector<NodeRef>& nodes);

// The same within bounds: nothing is appended to a list of `maxNodes` entries, and children of
// elements at `maxDepth` are not read.
void collectNodesLimited(const Element& element, const std::optional<Element>& parent, int depth,
                         int maxDepth, int maxNodes, std::vector<NodeRef>& nodes);

// --- A walk whose looks count. ---

enum class Step { into, past, end };
using AnswerVisitor = std::function<Step(const Element& element, const std::string& role)>;

// Visits the elements, which have depth 0, and what stands below those that the visitor goes into,
// level by level and in child order. Throws Unanswered (platform/accessibility.h).
void walkAnswered(std::vector<Element> elements, const WalkLimits& limits,
                  const AnswerVisitor& visit);

// --- Upwards. ---

// The node itself, then its ancestors upward, at most 25 entries.
std::vector<NodeRef> ancestorChain(const NodeRef& node);

// The same, as far as the visitor, which is at each of them once, knows enough.
std::vector<NodeRef> climb(const NodeRef& node, std::vector<std::string> attributes,
                           const ValueVisitor& visit);

}  // namespace tessarine
