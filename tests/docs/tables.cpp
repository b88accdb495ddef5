#include "docs/tables.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>

#include "operations/state_effects.hpp"

namespace vellis::test {
namespace {

using Names = std::vector<std::string>;

std::string entryPointOf(const std::string& call) {
    return call.substr(0, call.find('('));
}

void addOnce(Names& names, const std::string& name) {
    if (std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
}

/// The list in words: `a`, `b`.
std::string list(const Names& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

/// A name as code; what stands in parentheses behind it stays text.
std::string code(const std::string& name) {
    const std::size_t end = name.find(" (");
    if (end == std::string::npos)
        return "`" + name + "`";
    return "`" + name.substr(0, end) + "`" + name.substr(end);
}

/// The uses of one operation, taken together.
struct Operation {
    std::string scope;
    std::string name;
    std::vector<const Use*> uses;
};

/// Adds a use to the operation that it is of.
void addTo(std::vector<Operation>& operations, const Use& use) {
    auto found = std::find_if(operations.begin(), operations.end(), [&](const Operation& o) {
        return o.scope == use.scope && o.name == use.operation;
    });
    if (found == operations.end())
        found = operations.insert(operations.end(), {use.scope, use.operation, {}});
    found->uses.push_back(&use);
}

std::vector<Operation> operationsOf(const std::vector<Use>& uses, const std::string& family) {
    std::vector<Operation> operations;
    for (const Use& use : uses) {
        if (use.family == family)
            addTo(operations, use);
    }
    return operations;
}

Names scopesOf(const std::vector<Operation>& operations) {
    Names scopes;
    for (const Operation& operation : operations)
        addOnce(scopes, operation.scope);
    return scopes;
}

std::vector<Operation> ofScope(const std::vector<Operation>& operations, const std::string& scope) {
    std::vector<Operation> found;
    std::copy_if(operations.begin(), operations.end(), std::back_inserter(found),
                 [&](const Operation& operation) { return operation.scope == scope; });
    return found;
}

/// The operations, class by class: `Drawable`: `draw`; `Program`: `bind`, `draw`.
std::string byScope(const std::vector<Operation>& operations) {
    std::string text;
    for (const std::string& scope : scopesOf(operations)) {
        Names names;
        for (const Operation& operation : ofScope(operations, scope))
            names.push_back(code(operation.name));
        text += (text.empty() ? "" : "; ") + code(scope) + ": " + list(names);
    }
    return text;
}

/// What the uses of an operation do to a state, all taken together.
Effect together(const Effect& a, const Effect& b) {
    if (a.kind == b.kind && a.value == b.value)
        return a;
    return {a.state,
            a.kind == b.kind && a.kind == Effect::Kind::PutBack ? a.kind : Effect::Kind::Asked, ""};
}

std::vector<Effect> effectsOf(const Operation& operation) {
    std::vector<Effect> all;
    for (const Use* use : operation.uses) {
        for (const Effect& effect : effectsOf(*use)) {
            const auto found = std::find_if(
                all.begin(), all.end(), [&](const Effect& e) { return e.state == effect.state; });
            if (found == all.end())
                all.push_back(effect);
            else
                *found = together(*found, effect);
        }
    }
    return all;
}

/// How many errors the operation takes from GL's queue.
std::size_t errorsTakenBy(const Operation& operation) {
    std::size_t most = 0;
    for (const Use* use : operation.uses) {
        const auto count = std::count(use->calls.begin(), use->calls.end(), "glGetError()");
        most = std::max(most, static_cast<std::size_t>(count));
    }
    return most;
}

std::string leftBy(const Operation& operation) {
    Names left;
    for (const Effect& effect : effectsOf(operation)) {
        if (effect.kind == Effect::Kind::PutBack)
            continue;
        const std::string value = effect.kind == Effect::Kind::Value   ? effect.value
                                  : effect.kind == Effect::Kind::Saved ? "as saved"
                                                                       : "set";
        left.push_back("`" + effect.state + "` " + value);
    }
    if (const std::size_t errors = errorsTakenBy(operation))
        left.push_back("takes " + std::to_string(errors) + (errors == 1 ? " error" : " errors"));
    return list(left);
}

std::string putBackBy(const Operation& operation) {
    Names putBack;
    for (const Effect& effect : effectsOf(operation)) {
        if (effect.kind == Effect::Kind::PutBack)
            putBack.push_back("`" + effect.state + "`");
    }
    return list(putBack);
}

/// A table of the operations of a class; those with the same effects share a row.
std::string stateTable(const std::vector<Operation>& operations) {
    struct Row {
        std::string left;
        std::string putBack;
        Names names;
    };
    std::vector<Row> rows;
    for (const Operation& operation : operations) {
        const std::string left = leftBy(operation);
        const std::string putBack = putBackBy(operation);
        auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& r) {
            return r.left == left && r.putBack == putBack;
        });
        if (row == rows.end())
            row = rows.insert(rows.end(), {left, putBack, {}});
        row->names.push_back(code(operation.name));
    }
    std::string text = "| operation | leaves | puts back |\n|---|---|---|\n";
    for (const Row& row : rows) {
        const bool none = row.left.empty() && row.putBack.empty();
        text += "| " + list(row.names) + " | " + (none ? "nothing changed" : row.left) + " | " +
                row.putBack + " |\n";
    }
    return text;
}

} // namespace

std::vector<std::string> entryPoints(const std::vector<Use>& uses) {
    Names names;
    for (const Use& use : uses) {
        for (const std::string& call : use.calls)
            names.push_back(entryPointOf(call));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::string entryPointTable(const std::vector<Use>& uses) {
    std::map<std::string, std::vector<Operation>> callers;
    for (const Use& use : uses) {
        for (const std::string& call : use.calls)
            addTo(callers[entryPointOf(call)], use);
    }
    std::string text = "| entry point | called by |\n|---|---|\n";
    for (const auto& [entryPoint, operations] : callers)
        text += "| `" + entryPoint + "` | " + byScope(operations) + " |\n";
    return text;
}

std::string classTable(const std::vector<Use>& uses) {
    std::vector<Operation> operations;
    for (const Use& use : uses)
        addTo(operations, use);
    std::string text = "| class or namespace | operations |\n|---|---|\n";
    for (const std::string& scope : scopesOf(operations)) {
        Names names;
        for (const Operation& operation : ofScope(operations, scope))
            names.push_back(code(operation.name));
        text += "| " + code(scope) + " | " + list(names) + " |\n";
    }
    return text;
}

std::string operationTable(const std::vector<Use>& uses, const std::string& family) {
    std::string text = "| operation | calls |\n|---|---|\n";
    for (const Operation& operation : operationsOf(uses, family)) {
        Names names;
        for (const Use* use : operation.uses) {
            for (const std::string& call : use->calls)
                addOnce(names, "`" + entryPointOf(call) + "`");
        }
        text += "| " + code(operation.scope + "::" + operation.name) + " | " + list(names) + " |\n";
    }
    return text;
}

std::string stateTables(const std::vector<Use>& uses, const std::string& family) {
    std::string text;
    const std::vector<Operation> operations = operationsOf(uses, family);
    for (const std::string& scope : scopesOf(operations)) {
        const std::string table = stateTable(ofScope(operations, scope));
        text += (text.empty() ? "" : "\n") + code(scope) + "\n\n" + table;
    }
    return text;
}

} // namespace vellis::test
