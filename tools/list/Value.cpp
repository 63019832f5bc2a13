#include "tools/list/Value.h"

#include <charconv>
#include <cmath>

namespace list {

namespace {

// Bytes of the well-formed UTF-8 character at `at`, 0 when there is none.
size_t CharacterSize(const std::string& text, size_t at)
{
    const auto byte = [&](size_t i) {
        return at + i < text.size() ? static_cast<uint8_t>(text[at + i]) : uint8_t{0};
    };
    const uint8_t lead = byte(0);
    if (lead < 0x80) return 1;
    const size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    for (size_t i = 1; i < size; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    const bool overlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool outside = (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF4 && byte(1) > 0x8F);
    return overlong || outside ? 0 : size;
}

void AppendEscaped(const std::string& text, std::string* out)
{
    constexpr char kDigits[] = "0123456789abcdef";
    out->push_back('"');
    for (size_t at = 0; at < text.size();) {
        const auto byte = static_cast<uint8_t>(text[at]);
        const size_t size = CharacterSize(text, at);
        if (size == 0) {
            out->append("\\ufffd");
        } else if (byte == '"' || byte == '\\') {
            out->append({'\\', text[at]});
        } else if (byte < 0x20 || byte == 0x7F) {
            out->append({'\\', 'u', '0', '0', kDigits[byte >> 4], kDigits[byte & 15]});
        } else {
            out->append(text, at, size);
        }
        at += size == 0 ? 1 : size;
    }
    out->push_back('"');
}

// The shortest decimal that reads back as the same float; JSON has no number for
// infinities and NaN, so that these are texts.
std::string FloatText(float value)
{
    if (!std::isfinite(value))
        return std::isnan(value) ? "\"nan\"" : value > 0 ? "\"inf\"" : "\"-inf\"";
    char digits[64];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

}  // namespace

std::string Value::PlainText() const
{
    if (const bool* truth = std::get_if<bool>(&data_)) return *truth ? "true" : "false";
    if (const int64_t* number = std::get_if<int64_t>(&data_)) return std::to_string(*number);
    if (const float* number = std::get_if<float>(&data_)) return FloatText(*number);
    if (const std::string* text = std::get_if<std::string>(&data_)) {
        std::string quoted;
        AppendEscaped(*text, &quoted);
        return quoted;
    }
    return "null";
}

void Value::AppendJson(std::string* out) const
{
    if (const Items* items = std::get_if<Items>(&data_)) {
        out->push_back('[');
        for (size_t i = 0; i < items->size(); ++i) {
            if (i != 0) out->push_back(',');
            (*items)[i].AppendJson(out);
        }
        out->push_back(']');
    } else if (const Fields* fields = std::get_if<Fields>(&data_)) {
        out->push_back('{');
        for (size_t i = 0; i < fields->size(); ++i) {
            if (i != 0) out->push_back(',');
            AppendEscaped((*fields)[i].first, out);
            out->push_back(':');
            (*fields)[i].second.AppendJson(out);
        }
        out->push_back('}');
    } else {
        out->append(PlainText());
    }
}

// Called behind what names the value on its line; ends with a line end.
void Value::AppendText(std::string* out, int depth) const
{
    const std::string margin(static_cast<size_t>(2 * depth), ' ');
    if (const Items* items = std::get_if<Items>(&data_)) {
        if (items->empty()) return void(out->append(" none\n"));
        if (items->front().IsNumber()) {
            for (const Value& item : *items) out->append(" " + item.PlainText());
            out->push_back('\n');
            return;
        }
        out->push_back('\n');
        for (size_t i = 0; i < items->size(); ++i) {
            out->append(margin + "[" + std::to_string(i) + "]");
            (*items)[i].AppendText(out, depth + 1);
        }
        return;
    }
    const Fields* fields = std::get_if<Fields>(&data_);
    if (!fields) {
        out->append(" " + PlainText() + "\n");
        return;
    }
    // Plain fields first, on the line; lists and records below it.
    for (const auto& [name, value] : *fields)
        if (value.IsPlain()) out->append(" " + name + "=" + value.PlainText());
    out->push_back('\n');
    for (const auto& [name, value] : *fields) {
        if (value.IsPlain()) continue;
        out->append(margin + name);
        value.AppendText(out, depth + 1);
    }
}

std::string Value::Json() const
{
    std::string out;
    AppendJson(&out);
    return out;
}

std::string Value::Text() const
{
    std::string out;
    AppendText(&out, 0);
    return out.substr(out.find_first_not_of(" \n"));
}

}  // namespace list
