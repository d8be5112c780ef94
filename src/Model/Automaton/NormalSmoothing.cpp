#include "Model/Automaton/NormalSmoothing.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Model::Automaton {

namespace {

struct Group
{
    float sum[3];
    /// One less than the number of vertices.
    std::uint32_t count;
};

constexpr std::uint32_t NoGroup = 0xffffffff;

/// Groups by key where keys move upward: a place serves one key after the other.
class KeyWindow final
{
public:
    explicit KeyWindow(std::size_t keyRange)
    {
        std::size_t places = 1;
        while (places < keyRange)
            places *= 2;
        m_places.assign(places, {0, NoGroup});
    }

    /// The group of the key; NoGroup, for the caller to replace, if it is new.
    std::uint32_t &group(std::uint32_t key)
    {
        Place &place = m_places[key & (m_places.size() - 1)];
        if (place.key != key)
            place = {key, NoGroup};
        return place.group;
    }

private:
    struct Place
    {
        std::uint32_t key;
        std::uint32_t group;
    };
    std::vector<Place> m_places;
};

class KeyMap final
{
public:
    std::uint32_t &group(std::uint32_t key)
    {
        return m_groups.try_emplace(key, NoGroup).first->second;
    }

private:
    std::unordered_map<std::uint32_t, std::uint32_t> m_groups;
};

/// Puts the number of its group into each vertex's `shared`.
template <typename Keys>
std::vector<Group> sumUp(TriangleList &triangles, Keys keys)
{
    std::vector<Group> groups;
    for (Triangle &triangle : triangles) {
        for (Triangle::Vertex &vertex : triangle.vertices) {
            std::uint32_t &number = keys.group(vertex.shared);
            if (number == NoGroup) {
                number = static_cast<std::uint32_t>(groups.size());
                groups.push_back({{vertex.normal[0], vertex.normal[1], vertex.normal[2]}, 0});
            } else {
                Group &group = groups[number];
                for (unsigned axis = 0; axis < 3; ++axis)
                    group.sum[axis] += vertex.normal[axis];
                ++group.count;
            }
            vertex.shared = number;
        }
    }
    return groups;
}

} // namespace

void smoothNormals(TriangleList &triangles, std::size_t keyRange)
{
    // A wider window, of flat cells in a large volume, costs more to clear than a map to search.
    constexpr std::size_t WidestWindow = std::size_t{1} << 24;
    std::vector<Group> groups = keyRange == 0 || keyRange > WidestWindow
                                    ? sumUp(triangles, KeyMap())
                                    : sumUp(triangles, KeyWindow(keyRange));
    for (Group &group : groups) {
        float *sum = group.sum;
        for (unsigned axis = 0; axis < 3; ++axis)
            sum[axis] /= static_cast<float>(group.count);
        const float squared = sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2];
        for (unsigned axis = 0; axis < 3; ++axis)
            sum[axis] /= squared;
    }
    for (Triangle &triangle : triangles) {
        for (Triangle::Vertex &vertex : triangle.vertices) {
            std::copy_n(groups[vertex.shared].sum, 3, vertex.normal);
            vertex.shared = 0;
        }
    }
}

} // namespace Model::Automaton
