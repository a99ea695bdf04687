// JSON objects in one line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

// A text as JSON writes it, quotation marks included. Bytes from 0x80 on are taken for UTF-8 and stay.
std::string JsonText(std::string_view text);

// Members come in the order in which they are added.
class CJsonObject {
public:
    void Text(std::string_view name, std::string_view value) { Add(name, JsonText(value)); }
    void Whole(std::string_view name, std::uint64_t value) { Add(name, std::to_string(value)); }
    void Number(std::string_view name, double value); // four digits
    void Flag(std::string_view name, bool value) { Add(name, value ? "true" : "false"); }

    std::string Line() const { return "{" + m_members + "}\n"; }

private:
    void Add(std::string_view name, const std::string& value) {
        m_members += (m_members.empty() ? "" : ", ") + JsonText(name) + ": " + value;
    }

    std::string m_members;
};

} // namespace host
