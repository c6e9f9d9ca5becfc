// Reading and acting on user-interface elements of other processes.
//
// Every read is a synchronous request to the element's process and may block for as long as the
// platform's messaging time-out. Readers never fail: a missing attribute and a failed request read
// as empty, and so does a value of another type, except in axParent. Only `perform` reports
// failure, and the reads whose failure counts do.
#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "core/geometry.h"
#include "platform/cf_ref.h"
#include "platform/element.h"

namespace tessarine {

// --- Attributes, by their platform names. ---

// The attribute's value, empty when the request failed or yielded nothing.
CfRef<CFTypeRef> axValue(const Element& element, const std::string& attribute);
// Absent when the value is not a text.
std::optional<std::string> axString(const Element& element, const std::string& attribute);
// Absent when the value is not an element.
std::optional<Element> axElementAttribute(const Element& element, const std::string& attribute);
// Empty when the value is not a list of elements.
std::vector<Element> axElements(const Element& element, const std::string& attribute);
// Whether the value is the boolean true.
bool axIsTrue(const Element& element, const std::string& attribute);

std::string axRole(const Element& element);             // "AXRole"
std::string axTitle(const Element& element);            // "AXTitle"
std::string axSubrole(const Element& element);          // "AXSubrole"
std::string axDescription(const Element& element);      // "AXDescription"
std::string axInputValue(const Element& element);       // "AXValue" when it is a text
std::string fileNameAttribute(const Element& element);  // "AXFilename"

inline constexpr std::array labelAttributes{"AXTitle", "AXValue", "AXDescription"};
// The first of title, input value and description that is not empty.
std::string displayLabel(const Element& element);

std::vector<Element> axChildren(const Element& element);
// "AXParent", whatever its type.
std::optional<Element> axParent(const Element& element);
// Empty when the actions are not a list of texts.
std::vector<std::string> axActions(const Element& element);
// Whether the action is among them.
bool axOffers(const Element& element, const std::string& action);

// Position and size in screen points, origin at the top left of the main display; all zeros when
// either is missing or of another type.
Rect axFrame(const Element& element);

// The standardized path that "AXURL" names: of a location object whatever its scheme (empty when it
// has no path, as in "mailto:x"), of a text that is a file location; any other text unchanged.
std::optional<std::string> axURLPath(const Element& element);

// --- Reads whose failure counts. ---
//
// Each is absent when the element answered that it has no such attribute or no value, and when the
// value is of another type; when nobody answered it throws Unanswered.

class Unanswered : public std::exception {
 public:
  explicit Unanswered(bool gone) : gone_(gone) {}
  // Whether the element is no more (-25202: removed, or its process has ended); otherwise its
  // process does not answer now (-25204: busy or hung) or may not be asked (-25211).
  bool gone() const { return gone_; }
  const char* what() const noexcept override { return "an element does not answer"; }

 private:
  bool gone_;
};

std::optional<std::string> readText(const Element& element, const std::string& attribute);
std::optional<bool> readFlag(const Element& element, const std::string& attribute);
std::optional<Element> readElement(const Element& element, const std::string& attribute);
std::optional<std::vector<Element>> readElements(const Element& element,
                                                 const std::string& attribute);
// The elements that a list attribute holds, "AXChildren" as a rule; none when it is absent.
std::vector<Element> readList(const Element& element, const std::string& attribute = "AXChildren");
// The same as readElements, but an answer that neither holds the attribute nor says that there is
// none, such as -25200, throws Unanswered, too.
std::optional<std::vector<Element>> readDecisive(const Element& element,
                                                 const std::string& attribute);
// As axFrame; absent when position or size is.
std::optional<Rect> readFrame(const Element& element);
// The path that "AXURL" names, as axURLPath has it; absent for a location without a path.
std::optional<std::string> readLocation(const Element& element);

// Whether the element is no more. One that does not answer now is not gone.
bool isGone(const Element& element);
// Whether the element's process answers now, be it that the element is gone.
bool answersNow(const Element& element);

// --- Windows of an application. ---

// The focused window, then the main one unless it is the same.
std::vector<Element> focusedAndMainWindows(const Element& app);
// "AXWindows" in the order delivered, then the focused and main windows that are not among them.
std::vector<Element> topLevelWindows(const Element& app);

// --- Writing and acting. ---

// Each answers the platform's error code, 0 for success.
int setText(const Element& element, const std::string& attribute, const std::string& text);
int setTrue(const Element& element, const std::string& attribute);
int setElements(const Element& element, const std::string& attribute,
                const std::vector<Element>& elements);

// The same for an action.
int performAction(const std::string& action, const Element& element);

// Throws ToolError actionFailed "AX action " + action + " failed: " + the platform's error code.
void perform(const std::string& action, const Element& element);
// Whether the action succeeded.
bool tryAction(const std::string& action, const Element& element);

// --- Processes. ---

// The process that an element belongs to, which need not be the one in whose tree it was found.
// Asks nobody. Absent when the platform does not tell.
std::optional<std::int32_t> elementPid(const Element& element);

// How long each request of this program waits for its answer from now on; 0 s: as long as the
// platform has it (about 6 s).
void setMessagingTimeout(double seconds);

}  // namespace tessarine
