// A part's own file gets what changed since, and nothing else; who comes second is told.
#include "store_forge.h"
#include "store_processes.h"
#include "store_support.h"

#include "nxhost/control.h"
#include "store/file_layer.h"
#include "uf.h"
#include "uf_part.h"

#include <chrono>
#include <random>

using namespace store_test;

namespace {

class SavedPart : public testing::Test {
protected:
    ~SavedPart() override { nxhost::reset(); }

    // A part of about so many objects, saved and opened again.
    Part &stored(int objects)
    {
        store::save(samplePart(path, objects), path);
        nxhost::reset();
        return opened(path);
    }
    void expectFileHolds(const Part &part)
    {
        Part &onDisk = opened(path);
        EXPECT_EQ(listing(onDisk), listing(part));
        session.closePart(onDisk);
    }
    store::StoreError refusal(Part &part, const std::string &file)
    {
        try {
            store::save(part, file);
        } catch (const store::StoreError &error) {
            EXPECT_EQ(error.message.rfind(file + ": ", 0), 0u) << error.message;
            return error;
        }
        ADD_FAILURE() << "was saved";
        return {0, {}};
    }
    // The part is still whole and can be saved elsewhere.
    void expectUsable(Part &part)
    {
        const std::string before = listing(part);
        const std::string other = folder.file("rescued.prt");
        store::save(part, other);
        Part &rescued = opened(other);
        EXPECT_EQ(listing(rescued), before);
    }

    static Note &firstNote(Part &part)
    {
        Object &note = *part.byKind.at(Body(Note{}).index()).begin()->second;
        Session::get().changing(note, "text");
        return *note.as<Note>();
    }

    Session &session = Session::get();
    Folder folder;
    std::string path = folder.file("saved.prt");
};

} // namespace

// --- what is written ------------------------------------------------------------------------------

TEST_F(SavedPart, ANewNameIsWrittenAsAnImage)
{
    Part &part = samplePart(path, 100);
    EXPECT_FALSE(store::save(part, path).inPlace);
    EXPECT_FALSE(part.modified);
    expectFileHolds(part);
    const std::string copy = folder.file("image.prt");
    store::writeImage(part, copy);
    EXPECT_EQ(bytesOf(path), bytesOf(copy));
}

TEST_F(SavedPart, AChangedFieldWritesTwoRowsWhateverThePartHolds)
{
    for (const int objects : {100, 4000}) {
        fs::remove(path);
        Part &part = stored(objects);
        firstNote(part).lines = {"changed"};
        const store::SaveResult result = store::save(part, path);
        EXPECT_TRUE(result.inPlace);
        EXPECT_EQ(result.rows, 2); // the object and the part
        expectFileHolds(part);
        session.setAttribute(part.tag, "NUMBER", "D-200");
        EXPECT_EQ(store::save(part, path).rows, 2); // the attribute and the part
        expectFileHolds(part);
        nxhost::reset();
    }
}

TEST_F(SavedPart, AnUnchangedPartLeavesTheFileUntouched)
{
    Part &part = stored(100);
    const std::string before = bytesOf(path);
    firstNote(part); // said to change, and does not
    EXPECT_EQ(store::save(part, path).rows, 0);
    EXPECT_EQ(bytesOf(path), before);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"saved.prt"});
}

TEST_F(SavedPart, ThePlatformsSaveWritesInPlace)
{
    ASSERT_EQ(UF_initialize(), 0);
    stored(50);
    nxhost::reset();
    tag_t tag = 0;
    ASSERT_EQ(UF_PART_open(path.c_str(), &tag, nullptr), 0);
    Part &part = session.requirePart(tag);
    firstNote(part).lines = {"through the platform"};
    const auto before = fs::hard_link_count(path);
    EXPECT_EQ(UF_PART_is_modified(tag), 1);
    EXPECT_EQ(UF_PART_save(), 0);
    EXPECT_EQ(UF_PART_is_modified(tag), 0);
    EXPECT_EQ(fs::hard_link_count(path), before);
    expectFileHolds(part);
    EXPECT_EQ(UF_terminate(), 0);
}

namespace {

struct Change {
    const char *name;
    void (*make)(Part &part);
};

template <class Kind> Object &nth(Part &part, std::size_t n)
{
    const auto &all = part.byKind.at(Body(Kind{}).index());
    return *std::next(all.begin(), static_cast<std::ptrdiff_t>(n % all.size()))->second;
}

Session &session() { return Session::get(); }

// The sample's second child UDO, which owns a note, a line and an arc.
Object &child(Part &part) { return nth<Udo>(part, 2); }

constexpr Change kChanges[] = {
    {"rename", [](Part &part) { session().rename(nth<Note>(part, 1), "new name"); }},
    {"view", [](Part &part) { session().setView(nth<Line>(part, 2), 0); }},
    {"attribute set",
     [](Part &part) { session().setAttribute(child(part).tag, "TITLE", "other"); }},
    {"attribute added", [](Part &part) { session().setAttribute(child(part).tag, "X", "y"); }},
    {"attribute removed", [](Part &part) { session().removeAttribute(child(part).tag, "TITLE"); }},
    {"part attribute added", [](Part &part) { session().setAttribute(part.tag, "X", "y"); }},
    {"part attribute removed", [](Part &part) { session().removeAttribute(part.tag, "NUMBER"); }},
    {"link added", [](Part &part) { session().addLink(child(part), 4, nth<Point>(part, 0).tag); }},
    {"link replaced",
     [](Part &part) { session().replaceLinks(child(part), 0, 3, nth<Point>(part, 3).tag); }},
    {"link removed", [](Part &part) { session().removeLinkAt(child(part), 0); }},
    {"owned", [](Part &part) { session().own(child(part), {nth<Area>(part, 1).tag}); }},
    {"released",
     [](Part &part) { session().release(child(part), child(part).as<Udo>()->owned[1]); }},
    {"out of date", [](Part &part) { session().touch(nth<Point>(part, 1).tag); }},
    {"up to date",
     [](Part &part) {
         session().touch(nth<Point>(part, 2).tag);
         session().updatePart(part);
     }},
    {"made",
     [](Part &part) {
         newNote(part, {"made"}).attributes = {{"A", "B"}};
     }},
    {"made and deleted", [](Part &part) { session().remove(newNote(part, {"x"}).tag); }},
    {"deleted", [](Part &part) { session().remove(nth<Point>(part, 0).tag); }},
    {"deleted with attributes and what it owns",
     [](Part &part) {
         const Tag udo = nth<Udo>(part, 4).tag;
         for (const Session::Inbound &inbound : session().linksTo(udo)) {
             Object &holder = *session().find(inbound.udo);
             const auto &links = holder.as<Udo>()->links;
             for (std::size_t n = links.size(); n-- > 0;)
                 if (links[n].sequence == inbound.link.sequence) session().removeLinkAt(holder, n);
         }
         if (session().find(udo)) session().remove(udo); // a condemned one is gone by now
     }},
    {"condemned", [](Part &part) { session().remove(nth<Udo>(part, 3).tag); }},
    {"root deleted with all below", [](Part &part) { session().remove(nth<Udo>(part, 0).tag); }},
    {"sheet made",
     [](Part &part) {
         part.currentSheet = session().createSheet(part, "SH9", {0, 3, 0, 0, 1, 1, 1, 0}).tag;
     }},
    {"sheet deleted", [](Part &part) { session().removeSheet(nth<Sheet>(part, 0).tag); }},
    {"current sheet deleted", [](Part &part) { session().removeSheet(part.currentSheet); }},
    {"font", [](Part &part) { session().addFont(part, "leroy"); }},
    {"layer", [](Part &part) { part.layerStatus[100] = 3, part.workLayer = 100; }},
    {"pattern flag and units", [](Part &part) { part.patternDataSaved = false, part.units = 2; }},
    {"pattern of a known master",
     [](Part &part) {
         Pattern pattern;
         pattern.master = sampleMaster();
         session().create(part, pattern);
     }},
    {"pattern of a new master",
     [](Part &part) {
         PatternMaster master = *sampleMaster();
         master.shapes.clear();
         Pattern pattern;
         pattern.master = std::make_shared<const PatternMaster>(master);
         session().create(part, pattern);
     }},
    {"no pattern any more",
     [](Part &part) {
         const auto kind = Body(Pattern{}).index();
         while (part.byKind.count(kind)) session().remove(part.byKind[kind].begin()->second->tag);
     }},
    {"reference to a new object",
     [](Part &part) {
         const Tag tag = session().create(part, Point{}).tag;
         newNote(part, {"<W!" + std::to_string(tag) + "@REV>"});
     }},
    {"reference to an object that goes",
     [](Part &part) {
         // The note of the first round refers to the point of the first round.
         session().remove(nth<Point>(part, 0).tag);
     }},
};

} // namespace

// Each change alone on a fresh part, and all after one another on one part.
TEST_F(SavedPart, EveryKindOfChangeReachesTheFile)
{
    for (const Change &change : kChanges) {
        SCOPED_TRACE(change.name);
        fs::remove(path);
        Part &part = stored(80);
        change.make(part);
        EXPECT_TRUE(store::save(part, path).inPlace);
        expectFileHolds(part);
        nxhost::reset();
    }
    fs::remove(path);
    Part &part = stored(200);
    for (const Change &change : kChanges) {
        SCOPED_TRACE(change.name);
        change.make(part);
        store::save(part, path);
        expectFileHolds(part);
        if (!part.byKind.count(Body(Pattern{}).index()) || part.udosByClass.size() < 3) {
            nxhost::reset();
            return expectFileHolds(opened(path));
        }
    }
}

TEST_F(SavedPart, RandomChangesAndSavesNeverDriftFromTheFileSoak)
{
    std::mt19937 random(20240611);
    const int rounds = static_cast<int>(40 * std::max(1.0, soakShare() * 20));
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        fs::remove(path);
        Part *part = &stored(150);
        for (int step = 0; step < 12; ++step) {
            for (unsigned n = random() % 4; n; --n) {
                const Change &change = kChanges[random() % std::size(kChanges)];
                SCOPED_TRACE(change.name);
                try {
                    change.make(*part);
                } catch (const std::out_of_range &) { // nothing of the kind is left
                } catch (const Failure &) {           // a link cycle, an owned object
                }
            }
            store::save(*part, path);
            expectFileHolds(*part);
            if (random() % 3) continue;
            session.closePart(*part);
            part = &opened(path);
        }
        nxhost::reset();
        if (HasFailure()) return;
    }
}

// --- other processes ------------------------------------------------------------------------------

TEST_F(SavedPart, ASecondWriterWaitsAndThenSaysWhoHoldsThePart)
{
    Part &part = stored(50);
    firstNote(part).lines = {"second"};
    const std::string before = listing(part);
    const std::string bytes = bytesOf(path);
    {
        const LockingProcess holder(path, "BEGIN IMMEDIATE");
        const auto start = std::chrono::steady_clock::now();
        const store::StoreError error = refusal(part, path);
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
        EXPECT_EQ(error.code, UF_PART_err_locked);
        EXPECT_NE(error.message.find("process " + std::to_string(holder.id())), std::string::npos)
            << error.message;
        EXPECT_EQ(bytesOf(path), bytes);
    }
    EXPECT_EQ(listing(part), before);
    EXPECT_EQ(store::save(part, path).rows, 2); // nothing was forgotten
    expectFileHolds(part);
}

TEST_F(SavedPart, AWriterThatIsDoneInTimeLetsTheSecondOneIn)
{
    Part &part = stored(50);
    firstNote(part).lines = {"second"};
    const LockingProcess holder(path, "BEGIN IMMEDIATE", std::chrono::milliseconds(500));
    EXPECT_EQ(store::save(part, path).rows, 2);
}

TEST_F(SavedPart, ReadersDoNotWaitForReadersNorForOneWhoIsAboutToWrite)
{
    const std::string before = listing(stored(50));
    for (const char *hold : {"BEGIN; SELECT count(*) FROM object", "BEGIN IMMEDIATE"}) {
        SCOPED_TRACE(hold);
        const LockingProcess holder(path, hold);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(listing(opened(path)), before);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000));
    }
}

TEST_F(SavedPart, AReaderSaysWhoHoldsThePartToo)
{
    stored(50);
    const LockingProcess holder(path, "BEGIN EXCLUSIVE");
    try {
        opened(path);
        ADD_FAILURE() << "was opened";
    } catch (const store::StoreError &error) {
        EXPECT_EQ(error.code, UF_PART_err_locked);
        EXPECT_NE(error.message.find(std::to_string(holder.id())), std::string::npos);
    }
}

TEST_F(SavedPart, AFileThatIsNotTheOneThatWasOpenedIsLeftAlone)
{
    const auto letter = [](const std::string &file) { putBytes(file, "Dear reader"); };
    const auto otherPart = [](const std::string &file) {
        Part &other = Session::get().newPart(file + ".other", 1);
        store::writeImage(other, file);
        Session::get().closePart(other);
    };
    const auto savedByAnother = [](const std::string &file) {
        Part &other = opened(file);
        firstNote(other).lines = {"from somebody else"};
        store::save(other, file);
        Session::get().closePart(other);
    };
    const auto damage = [](const std::string &file) { Forge(file).run("DELETE FROM part"); };
    const auto newer = [](const std::string &file) { Forge(file).run("PRAGMA user_version=9"); };
    const auto gone = [](const std::string &file) { fs::remove(file); };
    struct Row {
        void (*change)(const std::string &file);
        const char *because;
    };
    for (const Row &row : {Row{gone, "it was removed"}, Row{letter, "something else is there"},
                           Row{otherPart, "saved again by somebody else"},
                           Row{savedByAnother, "saved again by somebody else"},
                           Row{damage, "it has been damaged"}, Row{newer, "something else"}}) {
        SCOPED_TRACE(row.because);
        fs::remove(path);
        Part &part = stored(60);
        firstNote(part).lines = {"mine"};
        row.change(path);
        const bool there = fs::exists(path);
        const std::string bytes = bytesOf(path);
        const store::StoreError error = refusal(part, path);
        EXPECT_EQ(error.code, UF_PART_err_changed_on_disk) << error.message;
        EXPECT_NE(error.message.find(row.because), std::string::npos) << error.message;
        EXPECT_EQ(fs::exists(path), there);
        EXPECT_EQ(bytesOf(path), bytes);
        EXPECT_TRUE(part.modified);
        expectUsable(part);
        fs::remove(folder.file("rescued.prt"));
        nxhost::reset();
    }
}

// The lock is on the file that was there when the writer came.
TEST_F(SavedPart, AFileReplacedWhileAWriterWaitsOrWritesIsLeftAlone)
{
    const auto replace = [&](const std::string &by) { fs::rename(folder.file(by), path); };
    const auto refusedWhen = [&](const std::function<void()> &happens) {
        fs::remove(path);
        Part &part = stored(60);
        fs::copy_file(path, folder.file("copy.prt"));
        firstNote(part).lines = {"mine"};
        happens();
        const store::StoreError error = refusal(part, path);
        EXPECT_EQ(error.code, UF_PART_err_changed_on_disk) << error.message;
        EXPECT_NE(error.message.find("it was removed or replaced"), std::string::npos);
        EXPECT_TRUE(part.modified);
        expectUsable(part);
        nxhost::reset();
        fs::remove(folder.file("rescued.prt"));
    };
    std::thread other;
    std::unique_ptr<LockingProcess> holder;
    refusedWhen([&] {
        holder = std::make_unique<LockingProcess>(path, "BEGIN IMMEDIATE",
                                                  std::chrono::milliseconds(900));
        other = std::thread([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            replace("copy.prt");
        });
    });
    other.join();
    static std::function<void()> atStep;
    refusedWhen([&] {
        atStep = [&] { replace("copy.prt"); };
        store::files::setHook([](const char *step, const std::string &) {
            if (std::string(step) == "write database" && atStep) std::exchange(atStep, {})();
            return 0;
        });
    });
    store::files::setHook(nullptr);
}

TEST_F(SavedPart, AFileReplacedByItsOwnCopyIsStillTheOne)
{
    Part &part = stored(60);
    fs::copy_file(path, folder.file("copy.prt"));
    fs::rename(folder.file("copy.prt"), path);
    firstNote(part).lines = {"mine"};
    EXPECT_EQ(store::save(part, path).rows, 2);
    expectFileHolds(part);
}

TEST_F(SavedPart, ANewNameThatIsTakenIsRefused)
{
    Part &part = samplePart(path, 50);
    putBytes(path, "somebody's file");
    EXPECT_EQ(refusal(part, path).code, UF_PART_err_file_exists);
    EXPECT_EQ(bytesOf(path), "somebody's file");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"saved.prt"});
    expectUsable(part);
}

TEST_F(SavedPart, AfterSavingUnderANewNameTheOldFileIsNotTouchedAgain)
{
    Part &part = stored(60);
    const std::string before = bytesOf(path);
    firstNote(part).lines = {"in the second file"};
    const std::string second = folder.file("second.prt");
    EXPECT_FALSE(store::save(part, second).inPlace);
    firstNote(part).lines = {"once more"};
    EXPECT_EQ(store::save(part, second).rows, 2);
    EXPECT_EQ(part.path, second);
    EXPECT_EQ(bytesOf(path), before);
    EXPECT_EQ(listing(opened(second)), listing(part));
}

// --- folders and disks that refuse ----------------------------------------------------------------

TEST_F(SavedPart, AReadOnlyFolderIsSaidAndNothingChanges)
{
    Part &part = stored(60);
    Part &fresh = samplePart(folder.file("fresh.prt"), 20);
    firstNote(part).lines = {"changed"};
    const std::string bytes = bytesOf(path);
    fs::permissions(path, fs::perms{0444});
    fs::permissions(folder.path(), fs::perms{0555});
    const std::string said = inUnprivilegedProcess([&] {
        return refusal(part, path).message + "|" +
               refusal(fresh, folder.file("fresh.prt")).message + "|" +
               std::to_string(listing(opened(path)).size());
    });
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_NE(said.find(path + ": the part cannot be written"), std::string::npos) << said;
    EXPECT_NE(said.find("fresh.prt: the part cannot be written"), std::string::npos) << said;
    EXPECT_EQ(bytesOf(path), bytes);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"saved.prt"});
}

TEST_F(SavedPart, AMissingFolderIsSaid)
{
    Part &part = samplePart(folder.file("no/folder/a.prt"), 20);
    EXPECT_EQ(refusal(part, folder.file("no/folder/a.prt")).code, UF_PART_err_cannot_write);
    expectUsable(part);
}

TEST_F(SavedPart, ALinkIsFollowed)
{
    const std::string real = folder.file("real.prt");
    Part &part = samplePart(path, 20);
    store::writeImage(part, real);
    fs::create_symlink(real, path);
    newNote(part, {"more"});
    store::writeImage(part, path);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(listing(opened(real)), listing(part));
}
