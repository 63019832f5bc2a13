#pragma once
// A tree of named values that prints itself as text or as JSON, in the order in
// which it was filled.

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace list {

class Value {
public:
    using Fields = std::vector<std::pair<std::string, Value>>;
    using Items = std::vector<Value>;

    Value() = default;  // null: an empty slot
    Value(bool value) : data_(value) {}
    Value(int value) : data_(int64_t{value}) {}
    Value(unsigned value) : data_(int64_t{value}) {}
    Value(int64_t value) : data_(value) {}
    Value(uint64_t value) : data_(static_cast<int64_t>(value)) {}
    Value(float value) : data_(value) {}
    Value(const char* value) : data_(std::string(value)) {}
    Value(std::string value) : data_(std::move(value)) {}
    Value(Items items) : data_(std::move(items)) {}
    Value(Fields fields) : data_(std::move(fields)) {}

    // One line, UTF-8; bytes that are no UTF-8 become U+FFFD.
    std::string Json() const;
    // Records of plain values and lists that begin with a number stand on one line.
    std::string Text() const;

private:
    bool IsPlain() const { return data_.index() < kItems; }
    bool IsNumber() const { return std::holds_alternative<int64_t>(data_); }
    void AppendJson(std::string* out) const;
    void AppendText(std::string* out, int depth) const;
    std::string PlainText() const;

    static constexpr size_t kItems = 5;
    std::variant<std::monostate, bool, int64_t, float, std::string, Items, Fields> data_;
};

}  // namespace list
