#include "simulator/judge/verdict.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>

namespace simulator {
namespace {

using End = PanelOutcome::End;

constexpr Seconds forever = std::numeric_limits<Seconds>::infinity();
constexpr int status_usage_error = 2;

enum class Kind { choice, closing, directInput, nothing };

Kind kindOfCommand(const std::vector<std::string>& arguments) {
  const std::string_view command = arguments.empty() ? std::string_view() : arguments.front();
  if (command == "choose-folder" || command == "choose-path") return Kind::choice;
  if (command == "close") return Kind::closing;
  const bool input = command == "click-point" || command == "type-text" || command == "press-key";
  return input ? Kind::directInput : Kind::nothing;
}

// A call as it is judged: what it claims, and the time whose effects are its own.
struct Claim {
  Kind kind = Kind::nothing;
  bool running = false;
  bool succeeded = false;
  std::string target;      // of a choice
  std::int64_t count = 0;  // of panels that it says it ended
  std::int64_t found = 0;  // of those that were found
  Seconds from = 0;
  Seconds ended = forever;
  Seconds until = forever;
};

// A panel that was chosen or cancelled.
struct Effect {
  std::size_t panel;  // from 0
  const PanelFate* fate;
  bool reported = false;
};

Claim claimOf(const ToolCall& call) {
  Claim claim;
  claim.kind = kindOfCommand(call.arguments);
  claim.running = !call.endedAt;
  claim.target = call.target;
  claim.from = call.startedAt;
  claim.ended = call.endedAt.value_or(forever);
  if (call.status == status_usage_error) claim.kind = Kind::nothing;
  if (call.status != 0) return claim;
  const auto result = nlohmann::json::parse(call.output, nullptr, false);
  if (!result.is_object()) {
    claim.kind = Kind::nothing;  // the usage text
    return claim;
  }
  const auto closed = result.find("closed");
  const bool counted = closed != result.end() && closed->is_number_integer();
  claim.succeeded = result.contains("ok") && result["ok"] == true;
  if (claim.kind == Kind::closing) claim.succeeded = claim.succeeded && counted;
  if (claim.succeeded) claim.count = claim.kind == Kind::choice ? 1 : 0;
  if (claim.succeeded && claim.kind == Kind::closing) claim.count = closed->get<std::int64_t>();
  return claim;
}

std::vector<Claim> claimsOf(const std::vector<ToolCall>& calls) {
  std::vector<Claim> claims;
  for (const ToolCall& call : calls) claims.push_back(claimOf(call));
  for (std::size_t i = 0; i < claims.size(); ++i) {
    for (std::size_t next = i + 1; next < claims.size(); ++next) {
      if (claims[next].kind == Kind::nothing || claims[next].from < claims[i].ended) continue;
      claims[i].until = std::min(claims[i].until, claims[next].from);
    }
  }
  return claims;
}

bool isInTime(const Claim& claim, Seconds at) {
  return claim.kind != Kind::nothing && claim.from <= at && at < claim.until;
}

bool accountsFor(const Claim& claim, const PanelOutcome& outcome) {
  if (!isInTime(claim, outcome.at)) return false;
  if (claim.kind == Kind::choice) return outcome.end == End::chosen && outcome.path == claim.target;
  return claim.kind == Kind::closing && outcome.end == End::cancelled;
}

// In the panels' order. Each effect is given to one call that reported it and lacks one: in the
// order of their times, to the call whose time is over first, so that none is left without where
// another could have done without. A person's come last.
std::vector<Effect> effectsOf(const std::vector<PanelFate>& panels, std::vector<Claim>& claims) {
  std::vector<Effect> effects;
  for (std::size_t i = 0; i < panels.size(); ++i) {
    if (panels[i].outcome.end != End::none) effects.push_back({i, &panels[i]});
  }
  std::ranges::stable_sort(effects, {}, [](const Effect& effect) {
    return std::pair(effect.fate->endedByPerson, effect.fate->outcome.at);
  });
  for (Effect& effect : effects) {
    Claim* reporter = nullptr;
    for (Claim& claim : claims) {
      if (claim.found >= claim.count || !accountsFor(claim, effect.fate->outcome)) continue;
      if (!reporter || claim.until < reporter->until) reporter = &claim;
    }
    if (!reporter) continue;
    ++reporter->found;
    effect.reported = true;
  }
  std::ranges::stable_sort(effects, {}, &Effect::panel);
  return effects;
}

std::string panelText(std::size_t panel) {
  return "panel " + std::to_string(panel + 1);
}

std::string effectText(const Effect& effect) {
  const PanelOutcome& outcome = effect.fate->outcome;
  const bool chosen = outcome.end == End::chosen;
  return panelText(effect.panel) + (chosen ? " chose " + outcome.path : " was cancelled");
}

class Judge {
 public:
  Judge(const std::vector<ToolCall>& calls, const std::vector<PanelFate>& panels)
      : panels_(panels), claims_(claimsOf(calls)), effects_(effectsOf(panels, claims_)) {}

  std::vector<std::string> verdicts() const {
    std::vector<std::string> texts;
    for (const Claim& claim : claims_) texts.push_back(verdict(claim));
    return texts;
  }

  // The effects in no call's time.
  const Effect* outside() const {
    return first([&](const Effect& effect) {
      return isUnexplained(effect) && std::ranges::none_of(claims_, [&](const Claim& claim) {
               return isInTime(claim, effect.fate->outcome.at);
             });
    });
  }

 private:
  template <class Test>
  const Effect* first(const Test& test) const {
    const auto found = std::ranges::find_if(effects_, test);
    return found == effects_.end() ? nullptr : &*found;
  }

  // Neither reported, nor asked for, nor a person's, nor what a running call may yet report.
  bool isUnexplained(const Effect& effect) const {
    if (effect.reported || effect.fate->endedByPerson) return false;
    return std::ranges::none_of(claims_, [&](const Claim& claim) {
      const bool mayExplain = claim.kind == Kind::directInput || claim.running;
      return mayExplain && isInTime(claim, effect.fate->outcome.at);
    });
  }

  const Effect* firstUnexplained(const Claim& claim, std::optional<End> end = {}) const {
    return first([&](const Effect& effect) {
      const PanelOutcome& outcome = effect.fate->outcome;
      return isUnexplained(effect) && isInTime(claim, outcome.at) && (!end || outcome.end == *end);
    });
  }

  std::string verdict(const Claim& claim) const {
    const bool claims = claim.kind == Kind::choice || claim.kind == Kind::closing;
    if (!claims || claim.running) return verdict_true;
    const Effect* effect = firstUnexplained(claim);
    if (!claim.succeeded) return effect ? "unreported: " + effectText(*effect) : verdict_true;
    if (claim.kind == Kind::closing) {
      const Effect* chosen = firstUnexplained(claim, End::chosen);
      if (chosen) return "false success: " + effectText(*chosen);
    }
    if (claim.found < claim.count) return "false success: " + insteadOf(claim);
    return effect ? "more than asked: " + effectText(*effect) : verdict_true;
  }

  // What the panels did instead of what was claimed: an effect that nobody reported, else a panel
  // that was there, else an effect that another claim already accounts for.
  std::string insteadOf(const Claim& claim) const {
    const auto isIts = [&](const Effect& effect) {
      return isInTime(claim, effect.fate->outcome.at);
    };
    const Effect* effect = first([&](const Effect& e) { return isIts(e) && !e.reported; });
    if (effect) return effectText(*effect);
    for (std::size_t i = 0; i < panels_.size(); ++i) {
      if (const auto text = presence(claim, panels_[i])) return panelText(i) + *text;
    }
    effect = first(isIts);
    return effect ? effectText(*effect) : "no panel chose anything";
  }

  // Of a panel that stood open in the call's time and was neither chosen nor cancelled in it.
  static std::optional<std::string> presence(const Claim& claim, const PanelFate& panel) {
    if (!panel.openedAt || *panel.openedAt > claim.ended) return {};
    const bool ended = panel.outcome.end != End::none;
    if (ended && panel.outcome.at < claim.until) return {};
    if (!panel.goneAt || *panel.goneAt >= claim.until) return " is still open";
    if (*panel.goneAt < claim.from) return {};
    return " ended with its application";
  }

  const std::vector<PanelFate>& panels_;
  std::vector<Claim> claims_;
  std::vector<Effect> effects_;
};

}  // namespace

std::vector<std::string> callVerdicts(const std::vector<ToolCall>& calls,
                                      const std::vector<PanelFate>& panels) {
  return Judge(calls, panels).verdicts();
}

std::string overallVerdict(const std::vector<ToolCall>& calls,
                           const std::vector<PanelFate>& panels) {
  if (calls.empty()) return "no call";
  const Judge judge(calls, panels);
  for (const std::string& verdict : judge.verdicts()) {
    if (verdict != verdict_true) return verdict;
  }
  const Effect* effect = judge.outside();
  return effect ? "unreported: " + effectText(*effect) : verdict_true;
}

}  // namespace simulator
