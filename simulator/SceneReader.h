// Reads scene files; TScene::Parse is the way to use it. The format stands in Scene.h.
#pragma once

#include "simulator/Scene.h"
#include "support/IniFile.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vorel::sim {

class TSceneReader final {
public:
    explicit TSceneReader(std::string fileName) : FileName(std::move(fileName)) {}

    // Fills an empty scene; ESceneError.
    void Read(std::string_view text, TScene& scene);

private:
    using Entry = TIniFile::Entry;
    // Takes a key other than `device`; false when the section has no such key.
    using KeyReader = bool (TSceneReader::*)(const Entry& entry);

    [[noreturn]] void Fail(std::size_t line, const std::string& text) const;

    void ReadSection(const TIniFile::Section& section);
    void BeginPod(const TIniFile::Section& section);
    void BeginCable(const TIniFile::Section& section);
    void BeginTarget(const TIniFile::Section& section);
    void CheckOwner(const TIniFile::Section& section, const std::string& name) const;
    void ReadKeys(const TIniFile::Section& section, KeyReader reader, const char* keys);
    void FinishTarget();

    bool ReadPodKey(const Entry& entry);
    UsbFault ReadUnplug(const Entry& entry) const;
    bool ReadCableKey(const Entry& entry);
    CableWiring ReadWiring(const Entry& entry);
    PortLine ReadLine(std::string_view text, bool isTdo, std::size_t line) const;
    bool ReadBoardKey(const Entry& entry);
    bool ReadChainKey(const Entry& entry);
    bool ReadSpiKey(const Entry& entry);

    SceneDevice ReadDevice(const Entry& entry, bool isController);
    void ReadDeviceItem(SceneDevice& device, std::string_view item, std::size_t line);
    void ReadPin(SceneDevice& device, std::string_view pin, std::string_view level,
                 std::size_t line) const;
    void ReadBsdl(SceneDevice& device, std::string_view path, std::size_t line);
    std::shared_ptr<TBSDLEntity> LoadEntity(const std::string& path, std::size_t line);
    void CheckDevice(SceneDevice& device, bool isController, std::size_t line) const;
    std::vector<std::string> ItemsOf(const Entry& entry);
    void SplitItem(std::string_view item, std::string& key, std::string& value, std::size_t line);
    SceneKind ReadKind(std::string_view text, std::size_t line) const;
    WireFault ReadFault(std::string_view text, std::size_t line) const;
    std::uint64_t ReadHex(std::string_view text, std::uint64_t largest, const char* what,
                          std::size_t line) const;
    std::size_t ReadNumber(std::string_view text, std::size_t smallest, std::size_t largest,
                           const char* what, std::size_t line) const;

    std::string FileName;
    TScene* Scene = nullptr;
    SceneTarget* Target = nullptr; // the pod or cable that is being read
    ScenePod* Pod = nullptr;       // the same, when it is a pod
    SceneCable* Cable = nullptr;   // the same, when it is a cable
    std::size_t DeviceCount = 0;
    std::size_t CellCount = 0;
    std::size_t SoftDeviceCount = 0;                              // those with a kind
    std::size_t SpiLine = 0;                                      // of the latest SPI device
    std::set<std::string> SectionsOfPod;                          // lower case
    std::set<std::string> ItemsOfDevice;                          // lower case
    std::map<std::string, std::shared_ptr<TBSDLEntity>> Entities; // by path
    SceneChain* Chain = nullptr; // of the section that is being read
    bool ChainIsBoard = false;
};

} // namespace vorel::sim
