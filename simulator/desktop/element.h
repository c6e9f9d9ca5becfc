// The accessibility tree of one process: what its elements hold and what can be done with them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "simulator/desktop/value.h"

namespace simulator {

class Element;

// The living elements of one process by number. Numbers are handed out once.
struct ElementTable {
  Pid pid = 0;
  std::uint64_t next_number = 0;
  std::unordered_map<std::uint64_t, Element*> living;
};

// A node of the tree, owned by its parent. Its frame is in Quartz screen points.
//
// "AXRole", "AXParent", "AXChildren", "AXPosition" and "AXSize" are answered from the structure;
// everything else is answered from what was `set`.
class Element {
 public:
  using Effect = std::function<std::int32_t()>;              // returns an accessibility error code
  using Setter = std::function<std::int32_t(const Value&)>;  // the same; stores the value itself

  // The root of a tree. `table` must outlive it.
  Element(ElementTable& table, std::string role);
  ~Element();
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  ElementId id() const { return {table_.pid, number_}; }
  const std::string& role() const { return role_; }
  Element* parent() const { return parent_; }
  const std::vector<std::unique_ptr<Element>>& children() const { return children_; }

  // Appends a child with a fresh number, of this element's process or of another one, whose table
  // must outlive it.
  Element& addChild(const std::string& role);
  Element& addChild(const std::string& role, ElementTable& table);
  // From now on the children of `other`, which must outlive this element, are this one's too.
  void showChildrenOf(const Element& other) { shared_ = &other; }
  // Removed elements are destroyed with all below them: who still names them meets a stale number.
  // An action or a setter may remove the very element it belongs to.
  void removeChild(Element& child);
  void removeChildren();

  // A std::monostate value declares an attribute that has no value (-25212).
  void set(const std::string& attribute, Value value);
  void clear(const std::string& attribute);              // from now on unsupported (-25205)
  const Value* get(const std::string& attribute) const;  // null when not `set`

  // What a person reads on it: its value, its title or else its description, if that is a text.
  std::string text() const;

  void setFrame(const Rect& frame) { frame_ = frame; }
  const std::optional<Rect>& frame() const { return frame_; }

  // Adding an action again replaces it.
  void addAction(const std::string& name, Effect effect);
  bool offers(const std::string& action) const;
  void makeSettable(const std::string& attribute, Setter setter);

  // A request to this element that is made before `time` is answered no sooner than `time`: the
  // process has announced the element and is still building it.
  void setReadableFrom(Seconds time) { readable_from_ = time; }
  Seconds readableFrom() const { return readable_from_; }

  // The answers to requests; the results are accessibility error codes.
  std::int32_t copyAttribute(const std::string& name, Value& value) const;
  std::int32_t setAttribute(const std::string& name, const Value& value);
  std::int32_t performAction(const std::string& name);
  List actionNames() const;

 private:
  struct Action {
    std::string name;
    Effect effect;
  };

  ElementTable& table_;
  std::uint64_t number_;
  std::string role_;
  Element* parent_ = nullptr;
  std::vector<std::unique_ptr<Element>> children_;
  const Element* shared_ = nullptr;
  std::vector<std::pair<std::string, Value>> attributes_;
  std::vector<std::pair<std::string, Setter>> setters_;
  std::vector<Action> actions_;
  std::optional<Rect> frame_;
  Seconds readable_from_ = 0;
};

// Whether the point lies in the frame; the right and bottom edges do not belong to it.
bool contains(const Rect& frame, Point point);

}  // namespace simulator
