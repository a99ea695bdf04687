// Command-line options from a table.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct Options;

// One option. `value` names its value in the help and is empty for a switch; `apply` throws HostError with
// ExitCode::Usage when it does not take the value, by way of BadValue.
struct OptionRow {
    std::string_view group; // heading in the help
    std::string_view name;  // with its dashes
    std::string_view value;
    std::string_view help; // empty: the help does not list it
    void (*apply)(Options& options, std::string_view value);
    int words = 1; // 2: the value may also stand as two arguments, which reach `apply` with a comma between them
    bool listedOnly = false; // only verbs whose own list names it know it
};

// Reads `arguments` into `options`; what is no option comes back in order. Both "--name value" and "--name=value"
// are read, "-" alone is no option, and after "--" nothing is. "/?" and "-?" are --help. Throws HostError with
// ExitCode::Usage, naming the nearest option for one that is unknown.
std::vector<std::string> ReadOptions(std::span<const OptionRow> rows, std::span<const std::string> arguments,
                                     Options& options);

// The candidate that is at most two slips (a letter more, less, other, or two swapped) away; empty when none is.
std::string_view NearMiss(std::string_view word, std::span<const std::string_view> candidates);

// The text in lines of at most 79 columns, all but the first of which are preceded by `indent` blanks; ends with a line
// end. The first line is to be appended to `indent` columns of other text.
std::string WrapHelp(std::string_view text, std::size_t indent);

// The help's list of those options that `isListed`, grouped in the table's order.
std::string DescribeOptions(std::span<const OptionRow> rows, const std::function<bool(const OptionRow&)>& isListed);

} // namespace host
