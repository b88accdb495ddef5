#include <vellis/state/state.hpp>

#include <vellis/gl.hpp>

#include "gl/capability.hpp"
#include "gl/entry_point.hpp"
#include "gl/loader.hpp"

namespace vellis::state {
namespace {

/// GL takes enumerators and names as unsigned numbers and gives them as signed ones.
constexpr unsigned int u(int value) {
    return static_cast<unsigned int>(value);
}

void query(unsigned int pname, int* values) {
    glGetIntegerv(pname, values);
}

void query(unsigned int pname, float* values) {
    glGetFloatv(pname, values);
}

void query(unsigned int pname, double* values) {
    glGetDoublev(pname, values);
}

/// Fills \p values from one query, or each from its own.
template <unsigned int... pnames, class T, unsigned int N>
void read(T (&values)[N]) {
    static_assert(sizeof...(pnames) == 1 || sizeof...(pnames) == N,
                  "one query for all values, or one for each");
    // What GL refuses to tell is not left undefined.
    for (T& value : values)
        value = T();
    T* value = values;
    (query(pnames, value++), ...);
}

template <unsigned int pname, unsigned int N>
void read(bool (&values)[N]) {
    GLboolean booleans[N] = {};
    glGetBooleanv(pname, booleans);
    for (unsigned int i = 0; i < N; ++i)
        values[i] = booleans[i] != GL_FALSE;
}

/// Most programs have one framebuffer bound for drawing and reading: putting that back is one call.
void bindFramebuffers(unsigned int draw, unsigned int read) {
    if (draw == read) {
        callIfLoaded(glBindFramebuffer, GL_FRAMEBUFFER, draw);
    } else {
        callIfLoaded(glBindFramebuffer, GL_DRAW_FRAMEBUFFER, draw);
        callIfLoaded(glBindFramebuffer, GL_READ_FRAMEBUFFER, read);
    }
}

/// A core context has one mode, of both faces.
void setPolygonModes(unsigned int front, unsigned int back) {
    if (loader::isCore()) {
        glPolygonMode(GL_FRONT_AND_BACK, front);
    } else {
        glPolygonMode(GL_FRONT, front);
        glPolygonMode(GL_BACK, back);
    }
}

/// The queries and the command of a record; there are none for what is no record of the table.
template <class T, unsigned int N, unsigned int pname>
struct Access;

#define VELLIS_QUERIES(...) __VA_ARGS__
#define VELLIS_STATE(T, N, pname, queries, command)                                                \
    template <>                                                                                    \
    struct Access<T, N, pname> {                                                                   \
        static void get(T (&values)[N]) { read<VELLIS_QUERIES queries>(values); }                  \
        static void set(const T (&v)[N]) { command; }                                              \
    };
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE
#undef VELLIS_QUERIES

} // namespace

template <class T, unsigned int N, unsigned int pname>
void get(State<T, N, pname>& record) {
    Access<T, N, pname>::get(record.value);
}

template <class T, unsigned int N, unsigned int pname>
void set(const State<T, N, pname>& record) {
    Access<T, N, pname>::set(record.value);
}

#define VELLIS_STATE(T, N, pname, queries, command)                                                \
    template VELLIS_EXPORT void get(State<T, N, pname>& record);                                   \
    template VELLIS_EXPORT void set(const State<T, N, pname>& record);
#include <vellis/state/state_records.inc>
#undef VELLIS_STATE

} // namespace vellis::state
