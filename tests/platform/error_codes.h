// The error codes that AXUIElement.h names for each kind of accessibility request, and what every
// kind is answered with for a program that may not use accessibility.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/desktop.h"

namespace tessarine::test {

using Verb = simulator::AccessibilityRequest::Verb;
using ErrorCodes = std::vector<std::int32_t>;

inline const ErrorCodes copyErrors{
    simulator::ax::attributeUnsupported, simulator::ax::noValue,
    simulator::ax::illegalArgument,      simulator::ax::invalidElement,
    simulator::ax::cannotComplete,       simulator::ax::notImplemented,
    simulator::ax::apiDisabled};
inline const ErrorCodes setErrors{
    simulator::ax::illegalArgument, simulator::ax::attributeUnsupported,
    simulator::ax::invalidElement,  simulator::ax::cannotComplete,
    simulator::ax::notImplemented,  simulator::ax::apiDisabled};
inline const ErrorCodes actionNamesErrors{
    simulator::ax::illegalArgument, simulator::ax::invalidElement, simulator::ax::failure,
    simulator::ax::cannotComplete,  simulator::ax::notImplemented, simulator::ax::apiDisabled};
inline const ErrorCodes performErrors{
    simulator::ax::actionUnsupported, simulator::ax::illegalArgument, simulator::ax::invalidElement,
    simulator::ax::cannotComplete,    simulator::ax::notImplemented,  simulator::ax::apiDisabled};
inline const ErrorCodes messagingTimeoutErrors{simulator::ax::illegalArgument,
                                               simulator::ax::invalidElement};

// From now on such requests alone are answered with the code.
inline void refuse(simulator::Desktop& desktop, Verb verb, std::int32_t code,
                   std::optional<std::string> name = {}, std::optional<std::string> role = {}) {
  desktop.faults().refused_requests = {{verb, code, std::move(name), std::move(role)}};
}

}  // namespace tessarine::test
