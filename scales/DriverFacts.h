#pragma once

// What the driver says of itself to the platform.

inline constexpr const wchar_t* kDriverVersion = L"4.3.25 (05.03.2020)";
inline constexpr const wchar_t* kDriverName = L"OrbeloScalesDriver";
inline constexpr const wchar_t* kDriverDescription =
    L"Драйвер электронных весов для простого взвешивания (NativeAPI).";
inline constexpr const wchar_t* kEquipmentType = L"ЭлектронныеВесы";
/// Revision of the platform's equipment interface.
inline constexpr long kInterfaceRevision = 2002;
