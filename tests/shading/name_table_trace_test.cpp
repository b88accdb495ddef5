#include "shading/name_table.hpp"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using vellis::NameTable;

/// Names of 0 to 17 letters, which differ from one another in a letter anywhere, or in length.
std::vector<std::string> names() {
    std::vector<std::string> all;
    for (std::size_t length = 0; length < 18; ++length) {
        const std::string same(length, 'm');
        all.push_back(same);
        for (std::size_t i = 0; i < length; ++i) {
            for (const char letter : {'a', 'z', '\xFF'}) {
                all.push_back(same);
                all.back()[i] = letter;
            }
        }
    }
    return all;
}

struct Table {
    explicit Table(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            table.add(name, std::make_unique<std::string>(name));
    }
    const std::string* find(const std::string& name) const {
        return table.find(name.c_str(), name.size());
    }
    NameTable<std::string> table;
};

TEST(NameTable, FindsEachNameAmongNamesThatDifferInALetter) {
    const Table table(names());
    for (const std::string& name : names()) {
        ASSERT_NE(table.find(name), nullptr) << name;
        EXPECT_EQ(*table.find(name), name);
    }
}

TEST(NameTable, DoesNotFindWhatDiffersFromEachNameInALetter) {
    for (const std::string& left : names()) {
        std::vector<std::string> others = names();
        others.erase(std::find(others.begin(), others.end(), left));
        EXPECT_EQ(Table(others).find(left), nullptr) << left;
    }
}

TEST(NameTable, FindsNothingInAnEmptyTable) {
    EXPECT_EQ(Table({}).find("color"), nullptr);
    EXPECT_EQ(Table({}).find(""), nullptr);
}

/// Counts how many of its like have ended.
struct Counted {
    explicit Counted(int& numEnded) : ended(numEnded) {}
    ~Counted() { ++ended; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    int& ended;
};

TEST(NameTable, KeepsTheFirstOfTwoObjectsOfOneNameToItsOwnEnd) {
    int numEnded = 0;
    {
        NameTable<Counted> table;
        auto first = std::make_unique<Counted>(numEnded);
        const Counted* const kept = first.get();
        table.add("color", std::move(first));
        table.add("color", std::make_unique<Counted>(numEnded));
        EXPECT_EQ(numEnded, 1);
        EXPECT_EQ(table.find("color", 5), kept);
    }
    EXPECT_EQ(numEnded, 2);
}

} // namespace
