// What the tests of the object code readers share: a host that keeps its messages, a consumer that
// keeps its blocks, and files in a folder that goes with the test.
#pragma once

#include "knowledge/TempFolder.h"
#include "objectcode/MemoryWords.h"
#include "support/NeutralHost.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace vorel {

using TBytes = std::vector<std::uint8_t>;

class TListeningHost : public TNeutralHost {
public:
    Status ShowMessageBox(MessageBoxKind kind, const WideText& caption, const WideText& text,
                          MessageBoxAnswer& answer) noexcept override {
        EXPECT_EQ(kind, MessageBoxKind::Error);
        EXPECT_EQ(caption, u"Error");
        Messages.push_back(ToUtf8(text));
        answer = MessageBoxAnswer::Ok;
        return StatusOk;
    }
    Status SaveTextFile(const WideText& path, const std::string& text) noexcept override {
        SavedAs = ToUtf8(path);
        Saved = text;
        return SaveStatus;
    }
    Status BeginWaitCursor() noexcept override { return ++WaitCursors, StatusOk; }
    Status EndWaitCursor() noexcept override { return --WaitCursors, StatusOk; }

    std::vector<std::string> Messages;
    std::string SavedAs;
    std::string Saved;
    Status SaveStatus = StatusOk;
    int WaitCursors = 0;
};

// The most memory that the test program has held at once since this was made, beyond what it held
// then. One at a time.
class TMemoryPeak {
public:
    TMemoryPeak();
    std::size_t Bytes() const noexcept;

private:
    std::size_t Before;
};

struct TBlock {
    std::int64_t Address;
    std::int64_t Count;
    TMemoryWords Words;

    friend bool operator==(const TBlock&, const TBlock&) = default;
};

class ObjectCodeTest : public testing::Test {
protected:
    std::string Write(const std::string& name, const std::string& contents) const {
        return Folder.Write(name, contents);
    }

    TBlockConsumer Collect() {
        Blocks.clear();
        Host.Messages.clear();
        return [this](const TMemoryWord* words, std::int64_t count, std::int64_t address) {
            Blocks.push_back({address, count, {words, words + std::max<std::int64_t>(count, 0)}});
        };
    }

    const TTempFolder Folder;
    TListeningHost Host;
    std::vector<TBlock> Blocks;
    std::unique_ptr<TMemoryImage> Image = std::make_unique<TMemoryImage>();
    std::int32_t ErrorCount = -1;
    std::int64_t MaxAddress = -1;
};

} // namespace vorel
