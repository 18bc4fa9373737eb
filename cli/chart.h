// The subcommand that draws charts.
#pragma once

namespace qvcli {

class Tool;
void addChart(Tool& tool);

}  // namespace qvcli
