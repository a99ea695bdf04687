#include "host/command/OptionTable.h"

#include "host/HostError.h"
#include "host/command/Options.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::size_t kSlips = 2;
constexpr std::size_t kHelpColumn = 30;
constexpr std::size_t kHelpWidth = 79;

[[noreturn]] void Misused(const std::string& text) {
    throw HostError(ExitCode::Usage, text + " (nmfvdeint --help lists the options)");
}

// Edits between two words, swapped neighbours counting as one.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            const std::size_t other = a[i - 1] == b[j - 1] ? 0 : 1;
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + other});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[a.size()][b.size()];
}

const OptionRow& FindRow(std::span<const OptionRow> rows, std::string_view name) {
    std::vector<std::string_view> names;
    for (const OptionRow& row : rows) {
        if (row.name == name) {
            return row;
        }
        names.push_back(row.name);
    }
    const std::string_view near = NearMiss(name, names);
    Misused("there is no option " + std::string(name) +
            (near.empty() ? std::string() : "; did you mean " + std::string(near) + "?"));
}

// The value in the arguments after `at`, which moves to the value's last.
std::string TakeValue(const OptionRow& row, std::span<const std::string> arguments, std::size_t& at) {
    if (++at >= arguments.size()) {
        Misused(std::string(row.name) + " needs a value: " + std::string(row.value));
    }
    std::string value = arguments[at];
    if (row.words == 2 && value.find(',') == value.npos && at + 1 < arguments.size()) {
        value += "," + arguments[++at];
    }
    return value;
}

} // namespace

std::string_view NearMiss(std::string_view word, std::span<const std::string_view> candidates) {
    std::string_view best;
    std::size_t least = kSlips + 1;
    for (const std::string_view candidate : candidates) {
        const std::size_t distance = Distance(word, candidate);
        if (distance < least) {
            least = distance;
            best = candidate;
        }
    }
    return best;
}

std::vector<std::string> ReadOptions(std::span<const OptionRow> rows, std::span<const std::string> arguments,
                                     Options& options) {
    std::vector<std::string> plain;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool asks = !optionsEnded && (arguments[i] == "/?" || arguments[i] == "-?");
        const std::string_view argument = asks ? std::string_view("--help") : std::string_view(arguments[i]);
        if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
            plain.emplace_back(argument);
            continue;
        }
        if (argument == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = argument.find('=');
        const OptionRow& row = FindRow(rows, argument.substr(0, equals));
        options.given.push_back(row.name);
        if (row.value.empty() && equals != argument.npos) {
            Misused(std::string(row.name) + " takes no value");
        }
        if (row.value.empty()) {
            row.apply(options, {});
        } else if (equals != argument.npos) {
            row.apply(options, argument.substr(equals + 1));
        } else {
            row.apply(options, TakeValue(row, arguments, i));
        }
    }
    return plain;
}

std::string WrapHelp(std::string_view text, std::size_t indent) {
    std::string out;
    std::size_t column = indent;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(text.size(), word.size() + 1));
        if (column + word.size() > kHelpWidth) {
            out += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (column != indent) {
            out += ' ';
            ++column;
        }
        out += word;
        column += word.size();
    }
    return out + '\n';
}

std::string DescribeOptions(std::span<const OptionRow> rows, const std::function<bool(const OptionRow&)>& isListed) {
    std::string out;
    std::string_view group;
    for (const OptionRow& row : rows) {
        if (row.help.empty() || !isListed(row)) {
            continue;
        }
        if (row.group != group) {
            group = row.group;
            out += "\n" + std::string(group) + ":\n";
        }
        std::string head = "  " + std::string(row.name);
        if (!row.value.empty()) {
            head += " " + std::string(row.value);
        }
        if (head.size() + 1 >= kHelpColumn) {
            out += head + "\n" + std::string(kHelpColumn, ' ');
        } else {
            out += head + std::string(kHelpColumn - head.size(), ' ');
        }
        out += WrapHelp(row.help, kHelpColumn);
    }
    return out;
}

} // namespace host
