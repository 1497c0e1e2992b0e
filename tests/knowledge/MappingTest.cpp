#include "knowledge/JtagAliases.h"
#include "knowledge/Manage_GenericDevices.h"
#include "knowledge/TempFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace vorel {
namespace {

TEST(JtagAliases, OnlyWellFormedLinesCountAndTheLastOneWins) {
    const TJtagAliases aliases("0ABC1234=0ABC5678 ; as = told\r\n"
                               "; 1=2\n 3 = 4 \n3=5\n6=xyz\n=7\n8=\n9==A\nB=C=D\n"
                               "111111111=2\nFFFFFFFF=1\n");
    EXPECT_EQ(aliases.Resolve(0x0ABC1234), 0x0ABC5678U);
    EXPECT_EQ(aliases.Resolve(0x3), 0x5U);
    EXPECT_EQ(aliases.Count(), 2U);
    EXPECT_EQ(aliases.Resolve(0x1), 0x1U);
}

TJTAGIdMapping MappingWithLinks() {
    TJTAGIdMapping mapping(0x0ABC1235);
    for (const char* file : {"/lib/One.bsd", "C:\\lib\\Two.bsd", "three.bsd"}) {
        TBSDLAndLibraryLink& link = mapping.AddLink(file);
        link.Library = std::string("L:") + file;
        link.LibraryReference = std::string("R:") + file;
    }
    return mapping;
}

TEST(JTAGIdMapping, FilesResolveThroughTheLinks) {
    TJTAGIdMapping mapping = MappingWithLinks();
    mapping.SetBSDLFile(2, "TWO.bsd");
    EXPECT_EQ(mapping.GetBSDLFile(2), "C:\\lib\\Two.bsd");
    EXPECT_EQ(mapping.GetLibrary(2), "L:C:\\lib\\Two.bsd");
    EXPECT_EQ(mapping.GetLibraryReference(2), "R:C:\\lib\\Two.bsd");
    EXPECT_EQ(mapping.GetOtherBSDLFiles(2), "\"One.bsd\",\"three.bsd\"");
    EXPECT_EQ(mapping.GetDisplayText(2), "Two.bsd");
    mapping.SetBSDLFile(3, "unknown.bsd");
    EXPECT_EQ(mapping.GetBSDLFile(3), "unknown.bsd");
    EXPECT_EQ(mapping.GetLibrary(3), "");
    mapping.SetLastAssociatedBSDL("nowhere.bsd");
    EXPECT_EQ(mapping.GetLastAssociatedBSDL(), "unknown.bsd");
    mapping.SetLastAssociatedBSDL("\\\\server\\x.bsd");
    EXPECT_EQ(mapping.GetLastAssociatedBSDL(), "\\\\server\\x.bsd");
}

TEST(JTAGIdMapping, AskingForAPositionFixesItsFile) {
    TJTAGIdMapping mapping = MappingWithLinks();
    mapping.SetLastAssociatedBSDL("One.bsd");
    EXPECT_EQ(mapping.GetBSDLFile(7), "/lib/One.bsd");
    mapping.SetLastAssociatedBSDL("three.bsd");
    EXPECT_EQ(mapping.GetBSDLFile(7), "/lib/One.bsd");
    EXPECT_EQ(mapping.GetBSDLFile(8), "three.bsd");
    EXPECT_EQ(mapping.IndexLinkCount(), 2);
    EXPECT_EQ(mapping.IndexLinkAt(2), nullptr);
    EXPECT_EQ(mapping.LinkAt(-1), nullptr);
}

TEST(JTAGIdMapping, WithALengthOnlyThereAreNoFiles) {
    TJTAGIdMapping mapping = MappingWithLinks();
    mapping.SetBSDLFile(0, "One.bsd");
    mapping.UseInstructionLength = true;
    EXPECT_EQ(mapping.GetBSDLFile(0) + mapping.GetOtherBSDLFiles(0) + mapping.GetDisplayText(0),
              "");
    EXPECT_EQ(mapping.GetLibrary(0), "");
    mapping.AddLink("").Library = "nameless";
    EXPECT_EQ(mapping.GetLibrary(0), "nameless");
    mapping.InstructionLength = 10;
    EXPECT_EQ(mapping.GetDisplayText(0), "Instruction Length = 10");
}

struct Editor final : IMappingEditor {
    bool Edit(TJTAGIdMapping& mapping) override {
        mapping.InstructionLength = 12;
        return Answer;
    }
    void NotifyChanged() override { ++Notified; }
    bool Answer = false;
    int Notified = 0;
};

TEST(GenericDevices, MappingsSurviveASession) {
    TTempFolder folder;
    const std::string path = folder.Write("BSDL_FileMap.txt", "; a note\n[Other]\nx=1\n");
    Editor editor;
    {
        Ref<TGenericDeviceManager> manager(new TGenericDeviceManager(path, &editor));
        EXPECT_EQ(manager->SetInstructionLength(0x0ABC1235, 10), StatusOk);
        EXPECT_EQ(manager->SetBSDLFile(0xF0000001, 3, u"/b/dev.bsd"), StatusOk);
        EXPECT_EQ(manager->EditMapping(0x5), StatusOk);
        EXPECT_EQ(editor.Notified, 0);
        editor.Answer = true;
        EXPECT_EQ(manager->EditMapping(0x5), StatusOk);
        EXPECT_EQ(editor.Notified, 1);
    }
    EXPECT_EQ(folder.Read("BSDL_FileMap.txt"),
              "; a note\n[Other]\nx=1\n\n"
              "[JTAGMapping1]\nIdCode=0ABC1235\nInstructionLength=10\nLastAssociatedBSDL=\n"
              "UseInstructionLength=0\n\n"
              "[JTAGMapping2]\nIdCode=F0000001\nInstructionLength=0\n"
              "LastAssociatedBSDL=/b/dev.bsd\nUseInstructionLength=0\n"
              "JTAGIndex1=3\nJTAGIndexBSDLLink1=/b/dev.bsd\n\n"
              "[JTAGMapping3]\nIdCode=00000005\nInstructionLength=12\nLastAssociatedBSDL=\n"
              "UseInstructionLength=0\n");
    Ref<TGenericDeviceManager> manager(new TGenericDeviceManager(path, nullptr));
    WideText file;
    EXPECT_EQ(manager->GetBSDLFile(0xF0000001, 3, file), StatusOk);
    EXPECT_EQ(file, u"/b/dev.bsd");
    std::filesystem::remove_all(folder.Path());
}

TEST(GenericDevices, FilesAreReadUpToTheFirstGap) {
    TMappingList list;
    list.ReadIni("[jtagmapping1]\nidcode=$0ABC1234\nLastAssociatedBSDL=bare.bsd\n"
                 "InstructionLength=99999999\nUseInstructionLength=1\n"
                 "BSDLFileName1=a.bsd\nLibrary1=l\nBSDLFileName2=\nBSDLFileName3=c.bsd\n"
                 "BSDLFileName5=lost.bsd\n"
                 "JTAGIndex1=4\nJTAGIndexBSDLLink1=c.bsd\nJTAGIndex2=x\nJTAGIndex3=-1\n"
                 "[JTAGMapping2]\nIdCode=zero\n[JTAGMapping3]\nIdCode=0x0ABC1234\n"
                 "BSDLFileName1=d.bsd\n[JTAGMapping5]\nIdCode=5\n");
    ASSERT_EQ(list.Items().size(), 1U) << "two sections of one id, and a gap behind them";
    TJTAGIdMapping& mapping = *list.Items()[0];
    EXPECT_EQ(mapping.GetIdCode(), 0x0ABC1234U);
    EXPECT_EQ(mapping.GetLastAssociatedBSDL(), "");
    EXPECT_EQ(mapping.InstructionLength, 0) << "nothing that could be an instruction register";
    EXPECT_FALSE(mapping.UseInstructionLength) << "the later section speaks";
    ASSERT_EQ(mapping.LinkCount(), 3);
    EXPECT_EQ(mapping.LinkAt(0)->Library, "l");
    EXPECT_EQ(mapping.LinkAt(2)->BSDLFileName, "d.bsd");
    EXPECT_EQ(mapping.GetBSDLFile(4), "c.bsd");
    mapping.AddLink("");
    mapping.AddLink("e.bsd");
    const std::string text = list.WriteIni("[JTAGMapping1]\nBSDLFileName9=old\n");
    EXPECT_NE(text.find("BSDLFileName9=old"), std::string::npos) << "old keys stay";
    EXPECT_EQ(text.find("BSDLFileName4="), std::string::npos) << "an empty name leaves a gap";
    EXPECT_NE(text.find("BSDLFileName5=e.bsd"), std::string::npos);
}

} // namespace
} // namespace vorel
