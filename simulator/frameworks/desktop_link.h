// The way from a program to its desktop. Each world has one, chosen when linking.
#pragma once

#include "simulator/desktop/request.h"

namespace simulator {

class DesktopLink {
 public:
  virtual ~DesktopLink() = default;
  // Blocks until the desktop has answered: as long as the request takes there.
  virtual Reply ask(const Request& request) = 0;
};

DesktopLink& desktopLink();

}  // namespace simulator
