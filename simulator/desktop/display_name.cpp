// The names under which the file browser shows folders.
#include <array>
#include <string_view>

#include "simulator/desktop/desktop.h"

namespace simulator {
namespace {

struct LocalizedFolder {
  std::string_view name;  // on the disk
  std::string_view chinese;
  std::string_view german;
};

constexpr std::array<LocalizedFolder, 4> system_folders = {{
    {"Applications", "应用程序", "Programme"},
    {"Library", "资源库", "Library"},
    {"System", "系统", "System"},
    {"Users", "用户", "Benutzer"},
}};

constexpr std::array<LocalizedFolder, 8> home_folders = {{
    {"Desktop", "桌面", "Schreibtisch"},
    {"Documents", "文稿", "Dokumente"},
    {"Downloads", "下载", "Downloads"},
    {"Library", "资源库", "Library"},
    {"Movies", "影片", "Filme"},
    {"Music", "音乐", "Musik"},
    {"Pictures", "图片", "Bilder"},
    {"Public", "公共", "Öffentlich"},
}};

// The folders have their English names on the disk.
template <typename Folders>
std::string_view translate(const Folders& folders, std::string_view name, Language language) {
  if (language == Language::english) return name;
  for (const LocalizedFolder& folder : folders) {
    if (folder.name == name) {
      return language == Language::simplifiedChinese ? folder.chinese : folder.german;
    }
  }
  return name;
}

}  // namespace

std::string Desktop::displayName(const std::string& path) const {
  std::string_view rest = path;
  while (rest.size() > 1 && rest.ends_with('/')) rest.remove_suffix(1);
  if (const auto volume = volumes_.find(std::string(rest)); volume != volumes_.end()) {
    return volume->second;
  }

  const std::size_t slash = rest.rfind('/');
  std::string_view name = slash == rest.npos ? rest : rest.substr(slash + 1);
  const std::string_view folder = slash == rest.npos ? "" : rest.substr(0, slash);
  constexpr std::string_view homes = "/Users/";
  if (slash == 0) {
    name = translate(system_folders, name, language_);
  } else if (folder.starts_with(homes) && folder.find('/', homes.size()) == folder.npos) {
    name = translate(home_folders, name, language_);
  }

  std::string shown(name);
  // A slash in a name that a person typed is stored as a colon.
  for (char& letter : shown) {
    if (letter == ':') letter = '/';
  }
  return shown;
}

}  // namespace simulator
