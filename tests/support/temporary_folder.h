// A temporary directory of this machine, removed with everything in it at the end.
#pragma once

#include <string>

namespace tessarine::test {

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }  // standardized, without links
  std::string makeFolder(const std::string& name) const;
  std::string makeFile(const std::string& name, const std::string& text = "") const;
  // An executable shell script.
  std::string makeScript(const std::string& name, const std::string& body) const;

 private:
  std::string path_;
};

}  // namespace tessarine::test
