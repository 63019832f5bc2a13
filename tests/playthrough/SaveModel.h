#pragma once
// What the save file has to look like: an independent model of its writing rule. Each
// write finds the sections, and the keys within each, in the reverse of the file's
// order, puts what is new in front, and changes what is there in its place.

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <variant>
#include <vector>

class SaveModel {
public:
    using Content = std::variant<std::string, double>;
    struct Section {
        std::string name;
        std::vector<std::pair<std::string, Content>> keys;
    };
    using Edit = std::vector<Section>;

    // One ini_open, writes in this order, ini_close.
    void Write(const Edit& edit)
    {
        std::reverse(sections_.begin(), sections_.end());
        for (Section& section : sections_) std::reverse(section.keys.begin(), section.keys.end());
        for (const Section& section : edit)
            for (const auto& [key, content] : section.keys) Set(section.name, key, content);
    }

    bool Has(const std::string& section, const std::string& key)
    {
        for (const Section& each : sections_)
            if (each.name == section)
                for (const auto& pair : each.keys)
                    if (pair.first == key) return true;
        return false;
    }

    std::string Text() const
    {
        std::string text;
        for (const Section& section : sections_) {
            text += "[" + section.name + "]\r\n";
            for (const auto& [key, content] : section.keys)
                text += key + "=\"" + Words(content) + "\"\r\n";
        }
        return text;
    }

private:
    static std::string Words(const Content& content)
    {
        if (const std::string* text = std::get_if<std::string>(&content)) return *text;
        char number[32];
        std::snprintf(number, sizeof number, "%f", std::get<double>(content));
        return number;
    }

    void Set(const std::string& name, const std::string& key, const Content& content)
    {
        auto section = std::find_if(sections_.begin(), sections_.end(),
                                    [&](const Section& each) { return each.name == name; });
        if (section == sections_.end()) section = sections_.insert(sections_.begin(), {name, {}});
        auto pair = std::find_if(section->keys.begin(), section->keys.end(),
                                 [&](const auto& each) { return each.first == key; });
        if (pair == section->keys.end())
            section->keys.insert(section->keys.begin(), {key, content});
        else
            pair->second = content;
    }

    std::vector<Section> sections_;
};
