#include "testing/recording_gl.h"

#include <algorithm>

namespace sky::render {

void RecordingGl::NewList(int list) {
    m_recording = list;
    m_lists[list].clear();
    ++m_recordings[list];
}

void RecordingGl::EndList() {
    m_recording = -1;
}

void RecordingGl::DeleteList(int list) {
    m_lists.erase(list);
    m_immediate.push_back({Op::DeleteList, list});
}

void RecordingGl::Add(const Call& call) {
    if (m_recording >= 0)
        m_lists[m_recording].push_back(call);
    else
        m_immediate.push_back(call);
}

const std::vector<RecordingGl::Call>& RecordingGl::List(int list) const {
    static const std::vector<Call> empty;
    const auto it = m_lists.find(list);
    return it == m_lists.end() ? empty : it->second;
}

const std::vector<float>& RecordingGl::Array(int array) const {
    static const std::vector<float> empty;
    const auto it = m_arrays.find(array);
    return it == m_arrays.end() ? empty : it->second;
}

int RecordingGl::ArrayVertices(const std::vector<Call>& calls) const {
    int vertices = 0;
    for (const Call& call : calls) {
        if (call.What == Op::DrawVertexArray)
            vertices += int(Array(call.Number).size() / 3);
    }
    return vertices;
}

std::vector<RecordingGl::Call> RecordingGl::Calls(const std::vector<Call>& calls, Op what) {
    std::vector<Call> kind;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(kind),
                 [&](const Call& c) { return c.What == what; });
    return kind;
}

int RecordingGl::Count(const std::vector<Call>& calls, Op what, int number) {
    return int(std::count_if(calls.begin(), calls.end(), [&](const Call& c) {
        return c.What == what && (number < 0 || c.Number == number);
    }));
}

std::vector<unsigned char> RecordingGl::Printed(const std::vector<Call>& calls) {
    std::vector<unsigned char> codes;
    for (const Call& call : calls) {
        if (call.What == Op::CallListByte)
            codes.push_back(static_cast<unsigned char>(call.Number));
    }
    return codes;
}

std::string RecordingGl::PrintedText(const std::vector<Call>& calls) {
    const std::vector<unsigned char> codes = Printed(calls);
    return std::string(codes.begin(), codes.end());
}

} // namespace sky::render
