// Names of the parameters that hosts give and printers answer.
#ifndef MODELINFOMATION_PARAMETERNAME_H_
#define MODELINFOMATION_PARAMETERNAME_H_

namespace Ravik {

// Custom media records.
inline constexpr char CUSTOMMEDIA_INITIALIZE[] = "InitializeCustomMedia";
inline constexpr char CUSTOMMEDIA_NUMBER[] = "CustomMediaNo";
inline constexpr char CUSTOMMEDIA_CMDVERSION[] = "CommandVersion";
inline constexpr char CUSTOMMEDIA_REGISTRATION_FLAG[] = "RegistrationFlag";
inline constexpr char CUSTOMMEDIA_CUSTOM_MEDIA_NAME[] = "CustomMediaName";
inline constexpr char CUSTOMMEDIA_REFERENCE_MEDIA_TYPE[] = "ReferenceMediaType";
inline constexpr char CUSTOMMEDIA_PLATENGAP_D[] = "PlatenGapD";
inline constexpr char CUSTOMMEDIA_PAPER_THICKNESS[] = "PaperThickness";
inline constexpr char CUSTOMMEDIA_PAPER_FEED_ADJUSTMENT_VALUE[] = "PaperFeedAdjustmentValue";
inline constexpr char CUSTOMMEDIA_DRYING_TIME[] = "DryingTimePerPass";
inline constexpr char CUSTOMMEDIA_ADSORPTIVITY_D[] = "MediaSuctionD";
inline constexpr char CUSTOMMEDIA_MEDIA_TENSIOM_D[] = "MediaTensionD";
inline constexpr char CUSTOMMEDIA_REMOVESKEW[] = "Removeskew";
inline constexpr char CUSTOMMEDIA_DEVICEID[] = "DeviceID";
inline constexpr char CUSTOMMEDIA_PLATENGAP_I[] = "PlatenGapI";
inline constexpr char CUSTOMMEDIA_ADSORPTIVITY_I[] = "MediaSuctionI";
inline constexpr char CUSTOMMEDIA_ROLL_BACK_TENSION_I[] = "RollBackTensionI";
inline constexpr char CUSTOMMEDIA_PAPER_FEED_STABILIZER[] = "PaperFeedStabilizer";
inline constexpr char CUSTOMMEDIA_FEED_LATERAL_ADJUSTMENT[] = "FeedLateralAdjust";
inline constexpr char CUSTOMMEDIA_USE_PAPER_EJECT_ROLLER[] = "UsePaperEjectRoller";
inline constexpr char CUSTOMMEDIA_ROLL_PAPER_MARGIN[] = "RollPaperMargin";
inline constexpr char CUSTOMMEDIA_MARGIN_PER_PAGE[] = "MarginPerPage";
inline constexpr char CUSTOMMEDIA_PLATENGAP[] = "PlatenGap";
inline constexpr char CUSTOMMEDIA_PREHEATER[] = "PreHeater";
inline constexpr char CUSTOMMEDIA_PLATEN_HEATER[] = "PlatenHeater";
inline constexpr char CUSTOMMEDIA_AFTER_HEATER[] = "AfterHeater";
inline constexpr char CUSTOMMEDIA_DRYING_FEED_AFTER_PRINT[] = "AfterHeaterFeed";
inline constexpr char CUSTOMMEDIA_BROWER[] = "AdditionalDryer";
inline constexpr char CUSTOMMEDIA_ADSORPTIVITY[] = "MediaSuction";
inline constexpr char CUSTOMMEDIA_CARRIAGE_DRAWING_DISTANCE[] = "HeadMovement";
inline constexpr char CUSTOMMEDIA_OVERWRITE_FREQUENCY[] = "MultiStrikePrinting";
inline constexpr char CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION[] = "MediaTension";
inline constexpr char CUSTOMMEDIA_MEDIA_FEED_SPEED[] = "FeedSpeed";
inline constexpr char CUSTOMMEDIA_ROLLMEDIA_TENSION_MEASURE[] = "TensionMeasure";
inline constexpr char CUSTOMMEDIA_ROLLING_SETTING[] = "RollType";
inline constexpr char CUSTOMMEDIA_PRINTE_DRY_FEED[] = "PrintDryFeed";
inline constexpr char CUSTOMMEDIA_FEEDING_TENSION[] = "FeedingTension";
inline constexpr char CUSTOMMEDIA_ROLLTENSION_MEASURE[] = "TakeupTension";
inline constexpr char CUSTOMMEDIA_BLANK_MEDIA_FEED_SPEED[] = "BlankAreaFeed";
inline constexpr char CUSTOMMEDIA_PREVENT_STICKING[] = "PreventSticking";
inline constexpr char CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_ATC[] = "MediaTensionATC";
inline constexpr char CUSTOMMEDIA_MEDIA_FEED_SPEED_ATC[] = "FeedSpeedATC";
inline constexpr char CUSTOMMEDIA_ROLLMEDIA_BACK_TENSION_MTC[] = "MediaTensionMTC";
inline constexpr char CUSTOMMEDIA_MEDIA_FEED_SPEED_MTC[] = "FeedSpeedMTC";
inline constexpr char CUSTOMMEDIA_SETTING_ALL[] = "SettingAll";

inline constexpr char RESERVED[] = "Reserved";
inline constexpr char FIRMWARE_VERSION[] = "FirmwareVersion";

// The status reply.
inline constexpr char STATUSREPLY_STATUSCODE[] = "StatusCode";
inline constexpr char STATUSREPLY_ERRORCODE[] = "ErrorCode";
inline constexpr char STATUSREPLY_WARNINGCODE[] = "WarningCode";
inline constexpr char STATUSREPLY_SERIALNUMBER[] = "SerialNumber";

}  // namespace Ravik

#endif  // MODELINFOMATION_PARAMETERNAME_H_
