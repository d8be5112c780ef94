#pragma once

#include "Fakes.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

namespace Fakes {

/// How many faces the picture of a volume has.
inline std::size_t faceCount(Model::Automaton::TotalVolume &volume)
{
    return volume.painter().opaqueFaces().size() + volume.painter().transparentFaces().size();
}

/// Both arrays hold these materials.
inline void expectMaterials(Model::Automaton::TotalVolume &volume,
                            const std::vector<std::uint32_t> &expected)
{
    EXPECT_EQ(Support::materialsOf(volume), expected);
    EXPECT_EQ(Support::nextMaterialsOf(volume), expected);
}

/// One workspace for all tests on the temporary state files, which every test finds empty.
class StateSuite : public WorkspaceSuite
{
protected:
    void TearDown() override
    {
        for (const std::string &file : {undoFile(), redoFile()})
            write(file, "");
        WorkspaceSuite::TearDown();
    }

    static std::string undoFile() { return workspace().archives().undoFileName(); }
    static std::string redoFile() { return workspace().archives().redoFileName(); }
    static void write(const std::string &file, const std::string &content)
    {
        std::ofstream(file) << content;
    }
    static std::string contentOf(const std::string &file)
    {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    /// A line of a state file.
    static std::string record(const std::string &tag, std::uint32_t number,
                              const std::vector<std::uint32_t> &materials)
    {
        std::string line = tag + ' ' + std::to_string(number);
        for (const std::uint32_t material : materials)
            line += ' ' + std::to_string(material);
        return line + '\n';
    }
};

/// A suite on one process operation. The runs take one strip, so that their result does not depend
/// on timing.
template <typename Process>
class ProcessSuite : public StateSuite
{
protected:
    using Shared = boost::shared_ptr<Process>;
    using Volume = boost::shared_ptr<Model::Automaton::TotalVolume>;
    using ObjectList = Core::PointerTracker::ObjectList;
    /// What the user's dialog does with the operation.
    using Answer = std::function<void(Process &)>;

    void SetUp() override
    {
        StateSuite::SetUp();
        workspace().setOperationFactory(boost::make_shared<OperationFactory>(
            [this](std::uint32_t id) { return id == Process::Id ? create() : nullptr; }));
    }
    void TearDown() override
    {
        if constexpr (isObserverClassWide)
            Process::setObserver(nullptr);
        StateSuite::TearDown();
    }

    /// The observer stands in one slot for all operations of the class, not in each operation.
    static constexpr bool isObserverClassWide =
        std::is_same_v<decltype(&Process::setObserver),
                       void (*)(boost::shared_ptr<Util::IObserver>)>;

    static Shared current()
    {
        return boost::dynamic_pointer_cast<Process>(workspace().currentOperation());
    }
    static void select(const ObjectList &objects)
    {
        workspace().pointer().publishSelected(objects);
    }
    static void type(const std::string &text) { workspace().interpreter().enter(text); }

    /// Starts the operation, with its observer unless `m_observed` is taken away.
    static void activate() { workspace().activate(Process::Id); }
    void activateOn(const Volume &volume, Answer answer = nullptr)
    {
        m_answer = std::move(answer);
        select({volume});
        activate();
    }

    /// The dialog of a process that takes a thickness and a material, accepted with these.
    static Answer accept(float thickness, std::uint32_t material)
    {
        return [=](Process &operation) {
            operation.setThickness(thickness);
            operation.setMaterial(material);
            operation.end();
        };
    }

    /// The whole process, from the selection on, with an answer that ends the operation. One that
    /// can be undone is on the undo stack then.
    Shared run(const Volume &volume, const Answer &answer)
    {
        Shared operation;
        activateOn(volume, [&](Process &running) {
            operation = current();
            answer(running);
        });
        m_answer = nullptr;
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        return operation;
    }
    Shared run(const Volume &volume, float thickness, std::uint32_t material)
    {
        return run(volume, accept(thickness, material));
    }

    /// Records for whatever number the operation may have.
    static std::string recordsOfAllNumbers(const std::string &tag,
                                           const std::vector<std::uint32_t> &materials)
    {
        std::string content;
        for (std::uint32_t number = 0; number < numbers; ++number)
            content += record(tag, number, materials);
        return content;
    }

    /// The number of the next operation, which is run for that: each record gives the only cell a
    /// material of its own, and undo shows which one is taken.
    std::uint32_t nextNumber(const std::string &tag) { return nextNumber(tag, accept(0.0F, 1)); }
    /// The same with an answer that ends the operation.
    std::uint32_t nextNumber(const std::string &tag, const Answer &answer)
    {
        constexpr std::uint32_t first = 1000;
        std::string content;
        for (std::uint32_t number = 0; number < numbers; ++number)
            content += record(tag, number, {first + number});
        const Volume cell = Support::makeVolume({1, 1, 1}, [](auto, auto, auto) { return 2U; });
        const Shared operation = run(cell, answer);
        write(undoFile(), content);
        operation->undo();
        write(undoFile(), "");
        const std::uint32_t material = Support::materialsOf(*cell).front();
        EXPECT_GE(material, first) << "no record was taken";
        return material - first;
    }

    Answer m_answer;
    bool m_observed = true;

private:
    static constexpr std::uint32_t numbers = 1000;

    Shared create()
    {
        const auto operation = boost::make_shared<Process>(&workspace());
        operation->setObserver(m_observed ? dialog() : nullptr);
        return operation;
    }

    boost::shared_ptr<Util::IObserver> dialog()
    {
        // The dialog's observer keeps the operation while it works with it.
        return observing([this] {
            log().push_back("dialog");
            const Shared held = current();
            if (held && m_answer)
                m_answer(*held);
        });
    }

    Support::PoolThreads m_threads{1};
};

} // namespace Fakes
