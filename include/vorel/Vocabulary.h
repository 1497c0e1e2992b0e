// Words that hosts and plug-ins exchange with this library in action and element tags. Data only:
// no logic of the library reads them. Each table is indexed by its enumeration; an empty text is a
// number that is not in use.
#pragma once

#include <array>
#include <cstdint>

namespace vorel {

enum class DeviceAction : std::int32_t {
    None = 0,
    PauseProcessor = 1,
    ContinueProcessor = 2,
    ResetProcessor = 3,
    SingleStepProcessor = 4,
    CompileProgram = 5,
    DownloadProgram = 6,
    StartDebug = 7,
    EndDebug = 8,
    ShowAboutDialog = 9,
    ResetDevice = 10,
    DownloadToDevice = 11,
    ShowViewer = 12,
    ChooseAndDownload = 13,
    ProcessorMenu = 14,
    ConfigureJTAGIdMapping = 15,
    Flash_ResetDevice = 16,
    Flash_ConfigureDevice = 17,
    Flash_DownloadDevice = 18,
    Flash_ChooseAndDownload = 19,
    WriteToFlash = 20,
    ConfigureFpgaProject = 21,
    ShowConfiguration = 22,
    ShowCurrentSense = 23,
    CustomAction = 25,
    OnDblClick = 26,
    HideViewer = 27,
    UpdateFirmware = 28,
    ToggleFirmwareAutoUpdate = 29,
};

inline constexpr std::array<const char16_t*, 30> DeviceActionNames{u"None",
                                                                   u"PauseProcessor",
                                                                   u"ContinueProcessor",
                                                                   u"ResetProcessor",
                                                                   u"SingleStepProcessor",
                                                                   u"CompileProgram",
                                                                   u"DownloadProgram",
                                                                   u"StartDebug",
                                                                   u"EndDebug",
                                                                   u"ShowAboutDialog",
                                                                   u"ResetDevice",
                                                                   u"DownloadToDevice",
                                                                   u"ShowViewer",
                                                                   u"ChooseAndDownload",
                                                                   u"ProcessorMenu",
                                                                   u"ConfigureJTAGIdMapping",
                                                                   u"Flash_ResetDevice",
                                                                   u"Flash_ConfigureDevice",
                                                                   u"Flash_DownloadDevice",
                                                                   u"Flash_ChooseAndDownload",
                                                                   u"WriteToFlash",
                                                                   u"ConfigureFpgaProject",
                                                                   u"ShowConfiguration",
                                                                   u"ShowCurrentSense",
                                                                   u"",
                                                                   u"CustomAction",
                                                                   u"OnDblClick",
                                                                   u"HideViewer",
                                                                   u"UpdateFirmware",
                                                                   u"ToggleFirmwareAutoUpdate"};

enum class DeviceElementKind : std::int32_t {
    None = 0,
    SoftDevice = 1,
    HardDevice = 2,
    SoftChain = 3,
    HardChain = 4,
    BoardDevice = 5,
    BoardChain = 6,
};

inline constexpr std::array<const char16_t*, 7> DeviceElementKindNames{
    u"None",      u"SoftDevice",  u"HardDevice", u"SoftChain",
    u"HardChain", u"BoardDevice", u"BoardChain"};

// Kinds of soft device element.
enum class ProcessorKind : std::int32_t {
    None = 0,
    Processor_OCDS = 1,
    Processor_Normal = 2,
    Processor_Hard = 3,
    Memory_Program = 4,
    Memory_Data = 5,
    Instrument = 6,
    ClockManager = 7,
};

inline constexpr std::array<const char16_t*, 8> ProcessorKindNames{
    u"None",           u"Processor_OCDS", u"Processor_Normal", u"Processor_Hard",
    u"Memory_Program", u"Memory_Data",    u"Instrument",       u"ClockManager"};

inline constexpr const char16_t* MemoryKindPrefix = u"Memory_";
inline constexpr const char16_t* ClockKindPrefix = u"Clock_";

} // namespace vorel
