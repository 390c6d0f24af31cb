#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelvo::test {

using Bytes = std::vector<std::uint8_t>;

/// Bytes as a page shows them: all of them in `head`, or the first and the last and how many are left out between.
struct ProtocolExample {
    Bytes head;
    std::size_t leftOut = 0;
    Bytes tail;
};

using ProtocolExamples = std::map<std::string, ProtocolExample>;

inline std::uint8_t hexByte(const std::string& word) {
    std::uint8_t byte = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, byte, 16);
    if (error != std::errc() || stop != end || word.size() != 2) {
        throw std::runtime_error("no byte: " + word);
    }
    return byte;
}

/// The lines of a block: bytes in hex, and in one place, if any, "... N bytes ...".
inline ProtocolExample parseExample(std::istream& block) {
    ProtocolExample example;
    Bytes* bytes = &example.head;
    for (std::string word; block >> word;) {
        if (word != "...") {
            bytes->push_back(hexByte(word));
            continue;
        }
        std::string unit;
        std::string end;
        if (!(block >> example.leftOut >> unit >> end) || unit != "bytes" || end != "..." || bytes == &example.tail) {
            throw std::runtime_error("not understood what is left out");
        }
        bytes = &example.tail;
    }
    return example;
}

/// The examples of a page by name. An example is a fenced block of the language hex; its name is in bold at the
/// beginning of a line above it. Throws std::runtime_error for a block without a name, of another language or without
/// an end, for a name that comes twice, and for what is no byte.
inline ProtocolExamples readExamples(std::istream& page) {
    const std::string fence = "```";
    ProtocolExamples examples;
    std::string name;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("**")) {
            name = line.substr(2, line.find("**", 2) - 2);
        }
        if (!line.starts_with(fence)) {
            continue;
        }
        if (line != fence + "hex" || name.empty()) {
            throw std::runtime_error("a block that is not hex, or has no name: " + line);
        }
        std::stringstream block;
        while (std::getline(page, line) && line != fence) {
            block << line << '\n';
        }
        if (line != fence || !examples.emplace(name, parseExample(block)).second) {
            throw std::runtime_error("a block without an end, or the second of its name: " + name);
        }
        name.clear();
    }
    return examples;
}

}  // namespace kelvo::test
