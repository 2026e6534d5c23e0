#pragma once

#include "client/events/SelWrapper.hpp"
#include "client/query/QueryBackend.hpp"
#include "client/traps/EventData.hpp"
#include "ipmi/Bytes.hpp"

#include <string>

/// Follows the controller's event log. Everything here belongs to the one thread that polls.
///
/// What is lost, unless the policy keeps a mark of its own (SelFollower):
///  - the first record of a batch passes for the one handled last and is skipped, also when the log was cleared and
///    filled again in between;
///  - a mark that the controller refuses becomes "last record", which answers with one record at a time: each is the
///    first of its batch, so nothing is told until the agent starts again;
///  - record ids that start again after the greatest leave the mark above them;
///  - a translator's text that is too long ends the process (refuseLongText).

namespace client::events {

/// No record is known; for the controller, the last record (IPMI 2.0, 31.5).
inline constexpr int lastRecordOfLog = 65535;

/// The log's translated records from id `first` on, at most `most`; what the query throws.
ResultMap readLog(unsigned first, int most);
/// The path of that answer's list, and of a record's bytes below the record's own path.
inline constexpr char translatedLog[] = "/BMC/SEL/TRANSLATED", rawField[] = "/RAW";
/// Decodes the record with these fields and routes it; sSelEntry then holds its bytes.
void handleRecord(const ResultMap& result, const _XNode& keys);

/// Where the policy keeps a mark: moves it on the disk behind what has been told. Not the thread that polls.
void keepMark();

/// The bytes from which the record was decoded; empty unless it is the one in hand.
ipmi::Bytes bytesOf(const EVENT_DATA_STRUCT& record);

} // namespace client::events

/// Id of the newest record decoded.
extern int m_iLastRecordID;
/// Text of the record in hand, and of the last one handled: empty before the first pass.
extern std::string sSelEntry;
extern std::string sLastSelEntry;
/// The translator's words for the record in hand.
extern std::string sDiscription;
extern std::string sTimeStamp;
extern std::string sSeverity;
/// The record in hand, and the last one handled.
extern EVENT_DATA_STRUCT t_SelData;
extern EVENT_DATA_STRUCT t_LastSelData;
/// The record in hand as the classifiers hand it on.
extern CSelWrapper aSelWrapper;

/// One poll: routes every record behind the last one handled, in the order of the log. The first poll only takes the
/// mark. Failures of the query are traced. 1 if there was something new, else 0; where the policy keeps a mark, 1 if
/// more is waiting.
int CheckForNewSELEntry();

/// Decodes sSelEntry into t_SelData and aSelWrapper and moves the mark on. The conversions are uneven, and the
/// classifiers' tables are made for them: event data 1 is read as decimal, revision and event data 2 and 3 are the
/// first character of their text.
void DecodeSELQuery();
