#include "simulator/programs/script.h"

#include <cctype>
#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "simulator/desktop/request.h"
#include "simulator/desktop/text.h"
#include "simulator/desktop/unmodelled.h"

namespace simulator {
namespace {

struct Modifier {
  std::string_view name;
  std::uint64_t flag;  // of CGEventFlags
};
constexpr Modifier modifiers[] = {{"command", command_flag},
                                  {"shift", shift_flag},
                                  {"option", option_flag},
                                  {"control", control_flag}};

struct Token {
  enum class Kind { word, number, text, mark, lineEnd, scriptEnd };
  Kind kind = Kind::scriptEnd;
  std::string text;  // a word in lower case, a string without its quotes and escapes
  std::size_t begin = 0;
  std::size_t end = 0;
};

[[noreturn]] void fail(std::size_t begin, std::size_t end, const std::string& problem) {
  throw SyntaxError(std::to_string(begin) + ":" + std::to_string(end) +
                    ": syntax error: " + problem + " (-2741)");
}

bool isWordPart(char letter) {
  return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_';
}
bool isNumberPart(char letter) {
  return isDigit(letter) || letter == '.';
}

class Scanner {
 public:
  explicit Scanner(const std::string& source) : source_(source) {}

  std::vector<Token> scan() {
    std::vector<Token> tokens;
    do {
      tokens.push_back(next());
    } while (tokens.back().kind != Token::Kind::scriptEnd);
    return tokens;
  }

 private:
  bool ended() const { return at_ == source_.size(); }

  Token next() {
    while (!ended() && (source_[at_] == ' ' || source_[at_] == '\t')) ++at_;
    if (source_.compare(at_, 2, "--") == 0) {
      while (!ended() && source_[at_] != '\n') ++at_;
    }
    const std::size_t begin = at_;
    if (ended()) return finish(Token::Kind::scriptEnd, "end of script", begin);
    const char first = source_[at_];
    if (first == '"') return scanString();
    if (isDigit(first)) return finish(Token::Kind::number, takeWhile(isNumberPart), begin);
    if (isWordPart(first)) {
      std::string word = takeWhile(isWordPart);
      for (char& letter : word) {
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
      }
      return finish(Token::Kind::word, word, begin);
    }
    ++at_;
    if (first == '\n') return finish(Token::Kind::lineEnd, "end of line", begin);
    return finish(Token::Kind::mark, std::string(1, first), begin);
  }

  Token scanString() {
    const std::size_t begin = at_++;
    std::string text;
    while (!ended() && source_[at_] != '"') {
      text += source_[at_] == '\\' ? takeEscape() : source_[at_];
      ++at_;
    }
    if (ended()) fail(begin, at_, "Expected “\"” but found end of script.");
    ++at_;
    return finish(Token::Kind::text, text, begin);
  }

  char takeEscape() {
    ++at_;
    switch (ended() ? '\0' : source_[at_]) {
      case '"':
      case '\\':
        return source_[at_];
      case 'n':
        return '\n';
      case 'r':
        return '\r';
      case 't':
        return '\t';
      default:
        fail(at_ - 1, at_, "Expected “\"” but found unknown token.");
    }
  }

  template <typename Belongs>
  std::string takeWhile(Belongs belongs) {
    const std::size_t begin = at_;
    while (!ended() && belongs(source_[at_])) ++at_;
    return source_.substr(begin, at_ - begin);
  }

  Token finish(Token::Kind kind, std::string text, std::size_t begin) const {
    return {kind, std::move(text), begin, at_};
  }

  const std::string& source_;
  std::size_t at_ = 0;
};

class Parser {
 public:
  explicit Parser(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

  std::vector<Statement> parse() {
    while (!is(Token::Kind::scriptEnd)) {
      if (is(Token::Kind::lineEnd)) {
        ++at_;
        continue;
      }
      parseLine();
      if (!is(Token::Kind::scriptEnd)) expect(Token::Kind::lineEnd, "end of line");
    }
    if (told_) failHere("“end tell”");
    return std::move(statements_);
  }

 private:
  const Token& here() const { return tokens_[at_]; }
  bool is(Token::Kind kind) const { return here().kind == kind; }
  bool isWord(std::string_view word) const { return is(Token::Kind::word) && here().text == word; }

  [[noreturn]] void failHere(const std::string& expected) const {
    fail(here().begin, here().end, "Expected " + expected + " but found " + here().text + ".");
  }

  std::string expect(Token::Kind kind, const std::string& description) {
    if (!is(kind)) failHere(description);
    return tokens_[at_++].text;
  }

  void expectWords(std::initializer_list<const char*> words) {
    for (const char* word : words) {
      if (!isWord(word)) failHere("“" + std::string(word) + "”");
      ++at_;
    }
  }

  bool skipMark(char mark) {
    if (!is(Token::Kind::mark) || here().text[0] != mark) return false;
    ++at_;
    return true;
  }

  void expectMark(char mark) {
    if (!skipMark(mark)) failHere("“" + std::string(1, mark) + "”");
  }

  double expectNumber() {
    return std::strtod(expect(Token::Kind::number, "a number").c_str(), nullptr);
  }

  std::string expectText() { return expect(Token::Kind::text, "a string"); }

  void parseLine() {
    if (isWord("tell")) return parseTell();
    if (isWord("end")) {
      if (!told_) failHere("end of script");
      ++at_;
      if (isWord("tell")) ++at_;
      told_.reset();
      return;
    }
    parseStatement(told_.value_or(""));
  }

  void parseTell() {
    expectWords({"tell", "application"});
    const std::string application = expectText();
    if (application != system_events_application && application != finder_application) {
      abortUnmodelled("AppleScript: application \"" + application + "\"");
    }
    if (isWord("to")) {
      ++at_;
      return parseStatement(application);
    }
    if (told_) abortUnmodelled("AppleScript: a tell block within a tell block");
    told_ = application;
  }

  void parseStatement(std::string_view application) {
    const std::string verb = here().text;
    if (isWord("delay")) return parseDelay();
    if (application == system_events_application) {
      if (isWord("keystroke")) return parseKeystroke();
      if (isWord("key")) return parseKeyCode();
      if (isWord("set")) return parseSetFrontmost();
    }
    if (application == finder_application && isWord("get")) return parseGetDisplayedName();
    // Without a target these words are nobody's.
    if (application.empty()) failHere("end of script");
    abortUnmodelled("AppleScript: \"" + verb + "\" to " + std::string(application));
  }

  void parseDelay() {
    expectWords({"delay"});
    statements_.emplace_back(Delay{expectNumber()});
  }

  void parseKeystroke() {
    expectWords({"keystroke"});
    std::string text = expectText();
    statements_.emplace_back(TypeText{std::move(text), parseModifiers()});
  }

  void parseKeyCode() {
    expectWords({"key", "code"});
    const auto code = static_cast<std::uint16_t>(expectNumber());
    statements_.emplace_back(PressKey{code, parseModifiers()});
  }

  std::uint64_t parseModifiers() {
    if (!isWord("using")) return 0;
    ++at_;
    if (!skipMark('{')) return parseModifier();
    std::uint64_t flags = parseModifier();
    while (skipMark(',')) flags |= parseModifier();
    expectMark('}');
    return flags;
  }

  std::uint64_t parseModifier() {
    for (const Modifier& modifier : modifiers) {
      if (!isWord(modifier.name)) continue;
      ++at_;
      expectWords({"down"});
      return modifier.flag;
    }
    failHere("a modifier key");
  }

  void parseSetFrontmost() {
    expectWords({"set", "frontmost", "of", "first", "process", "whose", "unix", "id", "is"});
    const auto pid = static_cast<Pid>(expectNumber());
    expectWords({"to", "true"});
    statements_.emplace_back(BringForward{pid});
  }

  void parseGetDisplayedName() {
    expectWords({"get", "displayed", "name", "of"});
    expectMark('(');
    expectWords({"posix", "file"});
    std::string path = expectText();
    expectWords({"as", "alias"});
    expectMark(')');
    statements_.emplace_back(ShowDisplayedName{std::move(path)});
  }

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  std::optional<std::string> told_;  // the application of the open tell block
  std::vector<Statement> statements_;
};

}  // namespace

std::vector<Statement> parseScript(const std::string& source) {
  return Parser(Scanner(source).scan()).parse();
}

}  // namespace simulator
