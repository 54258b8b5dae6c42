#include "base/hostsystem/hostsystem.h"
#include "cli/commandline.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
  quent::base::CatchCancelRequests();
  return quent::rasterops::cli::CommandLine().Run(std::vector<std::string>(argv + 1, argv + argc));
}
