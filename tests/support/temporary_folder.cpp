#include "support/temporary_folder.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tessarine::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "tessarine-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  path_ = fs::canonical(name).string();
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::makeFolder(const std::string& name) const {
  const fs::path folder = fs::path(path_) / name;
  fs::create_directories(folder);
  return folder.string();
}

std::string TemporaryFolder::makeFile(const std::string& name, const std::string& text) const {
  const fs::path file = fs::path(path_) / name;
  std::ofstream(file) << text;
  return file.string();
}

std::string TemporaryFolder::makeScript(const std::string& name, const std::string& body) const {
  const std::string file = makeFile(name, "#!/bin/sh\n" + body + "\n");
  fs::permissions(file, fs::perms::owner_all);
  return file;
}

}  // namespace tessarine::test
