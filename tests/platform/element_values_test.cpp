// Several attributes in one request, and what becomes of those that cannot be read so.
#include "platform/element_values.h"

#include <type_traits>

#include "dialog/tree.h"
#include "platform/accessibility.h"
#include "platform/error_codes.h"

namespace tessarine::test::element_values {
namespace {

namespace ax = simulator::ax;

// What was read serves its moment: nobody can keep it.
static_assert(!std::is_copy_constructible_v<ElementValues>);
static_assert(!std::is_move_constructible_v<ElementValues>);
static_assert(!std::is_copy_assignable_v<ElementValues>);
static_assert(!std::is_convertible_v<const ElementValues&, Element>);

const std::vector<std::string> everything{"AXRole",     "AXTitle",    "AXSubrole",  "AXDescription",
                                          "AXValue",    "AXFilename", "AXFocused",  "AXURL",
                                          "AXPosition", "AXSize",     "AXChildren", "AXParent"};

struct Field : BareDesktop {
  Field() {
    for (const char* name : {"Title", "Subrole", "Description", "Value", "Filename"}) {
      element.set(std::string("AX") + name, std::string("the ") + name);
    }
    element.set("AXFocused", true);
    element.set("AXURL", simulator::Url{"file:///usr/"});
    element.setFrame({1, 2, 3, 4});
    element.addChild("AXButton");
  }
  void refuse(Verb verb, std::int32_t error, std::optional<std::string> name = {}) {
    desktop.faults().refused_requests.push_back({.verb = verb, .error = error, .name = name});
  }
  std::size_t requests() const { return desktop.record().accessibilityRequests(); }

  simulator::Element& element = addWindow("Page").addChild("AXTextField");
  Element handle = BareDesktop::handle(element);
  AttributeNames asked{everything};
};

// Every value, as text; the same for both ways of reading.
template <class Number>
std::string shown(const Rect& frame, Number children, bool parent) {
  return std::to_string(frame.x + frame.y + frame.width + frame.height) + " " +
         std::to_string(children) + (parent ? " child" : " orphan");
}
std::vector<std::string> valuesOf(const ElementValues& values) {
  return {values.role(),
          values.title(),
          values.subrole(),
          values.description(),
          values.inputValue(),
          values.fileName(),
          values.label(),
          values.isTrue("AXFocused") ? "focused" : "",
          values.urlPath().value_or("nowhere"),
          shown(values.frame(), values.children().size(), values.parent().has_value())};
}
std::vector<std::string> singlyReadValuesOf(const Element& element) {
  return {axRole(element),
          axTitle(element),
          axSubrole(element),
          axDescription(element),
          axInputValue(element),
          fileNameAttribute(element),
          displayLabel(element),
          axIsTrue(element, "AXFocused") ? "focused" : "",
          axURLPath(element).value_or("nowhere"),
          shown(axFrame(element), axChildren(element).size(), axParent(element).has_value())};
}

TEST(ElementValues, AreReadInOneRequest) {
  Field field;
  const auto before = field.requests();
  const auto values = valuesOf(ElementValues(field.handle, field.asked));
  EXPECT_EQ(field.requests() - before, 1U);
  EXPECT_EQ(values, (std::vector<std::string>{
                        "AXTextField", "the Title", "the Subrole", "the Description", "the Value",
                        "the Filename", "the Title", "focused", "/usr", "10.000000 1 child"}));
}

TEST(ElementValues, AreEmptyWhereTheElementHasNone) {
  Field field;
  const Element bare = field.BareDesktop::handle(*field.element.children().front());
  EXPECT_EQ(valuesOf(ElementValues(bare, field.asked)), singlyReadValuesOf(bare));
}

TEST(ElementValues, AreEmptyWhereTheyAreOfAnotherType) {
  Field field;
  for (const char* name : {"AXTitle", "AXURL", "AXFocused"}) field.element.set(name, 7.0);
  EXPECT_EQ(valuesOf(ElementValues(field.handle, field.asked)), singlyReadValuesOf(field.handle));
}

TEST(ElementValues, LeaveOutTheOneThatFails) {
  for (const std::string& name : everything) {
    for (const std::int32_t error : {ax::failure, ax::cannotComplete, ax::noValue, ax::success}) {
      Field field;
      field.refuse(Verb::copy, error, name);
      const auto before = field.requests();
      const auto values = valuesOf(ElementValues(field.handle, field.asked));
      EXPECT_EQ(field.requests() - before, 1U);
      EXPECT_EQ(values, singlyReadValuesOf(field.handle)) << name << " " << error;
    }
  }
}

// Also where it answers with success and hands nothing out.
TEST(ElementValues, AreReadSinglyOnceEachWhereTheElementDoesNotAnswerForSeveral) {
  for (const std::int32_t error :
       {ax::failure, ax::illegalArgument, ax::cannotComplete, ax::notImplemented, ax::success}) {
    Field field;
    field.refuse(Verb::copySeveral, error);
    const auto before = field.requests();
    const ElementValues values(field.handle, field.asked);
    EXPECT_EQ(field.requests() - before, 1U) << "nothing is needed yet";
    EXPECT_EQ(valuesOf(values), singlyReadValuesOf(field.handle)) << error;
    const auto between = field.requests();
    valuesOf(values);
    EXPECT_EQ(field.requests(), between);
  }
}

TEST(ElementValues, AreEmptyWithoutAFurtherRequestWhereTheElementIsGone) {
  Field field;
  field.element.parent()->removeChild(field.element);
  const auto before = field.requests();
  const auto values = valuesOf(ElementValues(field.handle, field.asked));
  EXPECT_EQ(field.requests() - before, 1U);
  EXPECT_EQ(values, singlyReadValuesOf(field.handle));
}

TEST(ElementValues, AreOfTheMomentAndAskedForAfreshByTheNext) {
  Field field;
  const ElementValues before(field.handle, field.asked);
  field.element.set("AXValue", std::string("new"));
  EXPECT_EQ(before.inputValue(), "the Value");
  EXPECT_EQ(ElementValues(field.handle, field.asked).inputValue(), "new");
}

TEST(ElementValues, AskNothingForNoAttribute) {
  Field field;
  const auto before = field.requests();
  const AttributeNames nothing{{}};
  const ElementValues values(field.handle, nothing);
  EXPECT_EQ(field.requests(), before);
}

TEST(Offers, AnActionThatIsAmongTheNames) {
  Field field;
  field.element.addAction("AXPress", [] { return ax::success; });
  EXPECT_TRUE(axOffers(field.handle, "AXPress"));
  EXPECT_FALSE(axOffers(field.handle, "AXConfirm"));
}

}  // namespace
}  // namespace tessarine::test::element_values
