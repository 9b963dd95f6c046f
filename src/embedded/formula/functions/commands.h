// The menu commands of the client that @Command and @PostedCommand may name.
#pragma once

namespace lens::formula {

// Upper case, blank between.
extern const char kCommandNames[];

}  // namespace lens::formula
