// What a picture's text must be like.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace numcore::cli {

/// Every element is closed, in order, and no bare ampersand or angle is left.
inline bool isWellFormed(const std::string& xml) {
    std::vector<std::string> open;
    for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
        const std::size_t close = xml.find('>', at);
        if (close == std::string::npos || xml.substr(at + 1, close - at - 1).find('<') != std::string::npos)
            return false;
        const std::string tag = xml.substr(at + 1, close - at - 1);
        const std::string name = tag.substr(0, tag.find_first_of(" /", 1));
        if (tag[0] == '/') {
            if (open.empty() || "/" + open.back() != tag) return false;
            open.pop_back();
        } else if (tag.back() != '/') {
            open.push_back(name);
        }
    }
    for (std::size_t at = xml.find('&'); at != std::string::npos; at = xml.find('&', at + 1)) {
        if (xml.find(';', at) - at > 5) return false;
    }
    return open.empty() && xml.find("nan") == std::string::npos && xml.find("inf") == std::string::npos;
}

inline std::size_t countOf(const std::string& text, const std::string& word) {
    std::size_t n = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) ++n;
    return n;
}

}  // namespace numcore::cli
