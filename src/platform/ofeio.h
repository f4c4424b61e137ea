#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/ofe_header.h"

// A property list of text keys and values.
class OFEIO_Dictionary {
 public:
  // Adds the key; a key that is already there takes the new value. False only for a null key or value.
  bool AddEntry(const char* key, const char* value);
  const std::map<std::string, std::string>& entries() const { return entries_; }

 private:
  std::map<std::string, std::string> entries_;
};

// One end of a coolant circuit, as extractCoolantInletInfo finds it.
struct CoolantInletInfo {
  std::vector<std::uint8_t> layoutInletFlags;   // 1: a surface inlet of the same circuit coincides with it
  std::vector<std::uint8_t> surfaceInletFlags;  // 1: taken
  std::vector<std::int32_t> surfaceInletGroups;
};

// The gates of a hot-runner source, ascending by group.
struct GateInfo {
  struct Gate {
    std::int32_t group;
    std::uint8_t flag;  // 1: a face of the gate belongs to a plastic element with group 201..300
  };
  std::vector<Gate> commonGates;
  std::vector<Gate> hotColdGates;
};

// Reader and writer of OFE files. One object reads or writes one file at a time.
//
// Reading: beginReading, then the read operation of a block until it returns a negative value, blocks in any
// order, then endReading. Each read operation returns the entry's index in its block (0, 1, ...) or -1 at its
// end; text handed out stays valid until the next entry of the same block is read.
//
// Writing: set the header, beginWriting, the write operations block by block (all entries of a block in a
// row), endWriting. Each write operation returns the index the entry got, or -1 when nothing is open or the
// entry was refused (an illegal node count, a node that is not finite, a block
// that was already finished): the file then cannot be
// completed and endWriting returns 0. Nothing appears under the target's name before endWriting has
// returned 1.
//
// Node and element numbers are 1-based. Lengths are the file's own floats (unscaled).
class OFEIO_Manipulator {
 public:
  OFEIO_Manipulator();
  ~OFEIO_Manipulator();
  OFEIO_Manipulator(const OFEIO_Manipulator&) = delete;
  OFEIO_Manipulator& operator=(const OFEIO_Manipulator&) = delete;

  OFEHeader header;
  std::int32_t& operator[](OFEHeaderField field) { return header[field]; }

  const std::string& getHeaderSourceString() const { return header.source; }
  const std::string& getHeaderDateTimeString() const { return header.dateTime; }
  const std::string& getHeaderUnitString() const { return header.unit; }
  const std::string& getHeaderRemarkString() const { return header.remark; }
  void setHeaderSourceString(const std::string& text) { header.source = text; }
  void setHeaderDateTimeString(const std::string& text) { header.dateTime = text; }
  void setHeaderUnitString(const std::string& text) { header.unit = text; }
  void setHeaderRemarkString(const std::string& text) { header.remark = text; }

  // The first failure since the last begin operation in one line, without the file's name; empty when there
  // was none.
  const std::string& errorText() const;
  // The version that the file being read was written as.
  int fileVersion() const;
  // True for the versions that beginWriting accepts.
  static bool isWritableVersion(int version);
  // All of them, ascending, as text for messages.
  static const char* writableVersionsText();

  // Opens a file and reads its header. logPath, when given, gets a line if the file is refused. With
  // secondBlockOnly 1 only the second part of the file (diameters, lines, layout, sensors and what follows)
  // is handed out, blocks of the first part seem empty and are not checked. 1, or 0 when the file is refused.
  int beginReading(const char* path, const char* logPath, int secondBlockOnly);
  int endReading();  // 1, or 0 when nothing was open

  // 1; 0 when the target cannot be created; -1 when the version is not a writable one. mode is not used.
  int beginWriting(const char* path, int version, int mode);
  int endWriting();  // 1 when the complete file stands at the target's name, else 0

  // 1 when the file's second part holds any entry, 0 when it does not, -1 when the file cannot be read.
  static int getFileSecondBlockExsistency(const char* path);
  // 1 and format 1 (block file) for a readable OFE file, else 0 and format 0.
  static int getFileFormat(const char* path, int& format);
  // Number of inlets found, or -1 when the file cannot be read. mode is not used.
  static int extractCoolantInletInfo(const char* path, int mode, CoolantInletInfo& info);
  // 1, or 0 when the file cannot be read or blockFormat is false. The two unnamed places take no object.
  static int extractGateInfo(const char* path, bool blockFormat, std::nullptr_t, GateInfo& info,
                             std::nullptr_t);

  int writeNodeBlockEntry(float x, float y, float z);
  int writeElementPlasticBlockEntry(int nodeCount, const int nodes[], int a, int b, float value);
  int writeElementMoldBaseBlockEntry(int nodeCount, const int nodes[], int a, int b, float value);
  int writeElementCoolChannelBlockEntry(int nodeCount, const int nodes[], int a, int b, float value);
  int writeElementSurfaceBlockEntry(const int nodes[4], int interfaceId, int ownerCode, int contactCode,
                                    int boundaryType, int elementNo, int tag);
  int writeBoundaryConditionBlockEntry(int entityNo, int typeCode, float value);
  int writeBadElementPlasticBlockEntry(int elementNo, int code);
  int writeBadElementMoldBaseBlockEntry(int elementNo, int code);
  int writeBadElementCoolChannelBlockEntry(int elementNo, int code);
  int writeCoolantChannelDiameterBlockEntry(const int nodes[8], float diameter);
  int writeCoolantChannelLineBlockEntry(float x, float y, float z, float diameter, int a, int b, int c,
                                        int d);
  int writeCoolantChannelLayoutBlockEntry(int isPoint, float x, float y, float z, int pointType, int endA,
                                          int endB, float diameterA, float diameterB, int code, int beamCode,
                                          int extra, float v1, float v2, float v3, float v4, float v5,
                                          float v6, float v7, float v8);
  int writeSensorInfoBlockEntry(int kind, const int ids[4], float x, float y, float z);
  int writeMoldMetalBlockEntry(int isPoint, float x, float y, float z, const int nodes[4], int codeA,
                               int codeB);
  int writeCoolingChannelSurfaceEntry(int isPoint, float x, float y, float z, const int nodes[4], int codeA,
                                      int codeB);
  int writeSurfaceElementBoundaryConditionBlockEntry(int surfaceNo, int count, const int list[]);
  int writeSurfaceElementBoundaryConditionNameBlockEntry(const char* name, int type,
                                                         const OFEIO_Dictionary* dictionary);
  int writeMoldMetalLayerBlockEntry(int matId, int layerId, const char* name, int a, int b, int c, int flag);
  int writePartInsertLayerBlockEntry(int matId, int layerId, const char* name, int a, int b, int c, int flag);
  int writeCoolantChannelLayerBlockEntry(int matId, int layerId, const char* name);
  int writePartingDirectionBlockEntry(float x, float y, float z);

  int readNodeBlockEntry(float& x, float& y, float& z);
  int readElementPlasticBlockEntry(int& nodeCount, int nodes[8], int& a, int& b, float& value);
  int readElementMoldBaseBlockEntry(int& nodeCount, int nodes[8], int& a, int& b, float& value);
  int readElementCoolChannelBlockEntry(int& nodeCount, int nodes[8], int& a, int& b, float& value);
  int readElementSurfaceBlockEntry(int nodes[4], int& interfaceId, int& ownerCode, int& contactCode,
                                   int& boundaryType, int& elementNo, int& tag);
  int readBoundaryConditionBlockEntry(int& entityNo, int& typeCode, float& value);
  int readBadElementPlasticBlockEntry(int& elementNo, int& code);
  int readBadElementMoldBaseBlockEntry(int& elementNo, int& code);
  int readBadElementCoolChannelBlockEntry(int& elementNo, int& code);
  int readCoolantChannelDiameterBlockEntry(int nodes[8], float& diameter);
  int readCoolantChannelLineBlockEntry(float& x, float& y, float& z, float& diameter, int& a, int& b, int& c,
                                       int& d);
  int readCoolantChannelLayoutBlockEntry(int& isPoint, float& x, float& y, float& z, int& pointType,
                                         int& endA, int& endB, float& diameterA, float& diameterB, int& code,
                                         int& beamCode, int& extra, float& v1, float& v2, float& v3,
                                         float& v4, float& v5, float& v6, float& v7, float& v8);
  int readSensorInfoBlockEntry(int& kind, int ids[4], float& x, float& y, float& z);
  int readMoldMetalBlockEntry(int& isPoint, float& x, float& y, float& z, int nodes[4], int& codeA,
                              int& codeB);
  int readCoolingChannelSurfaceEntry(int& isPoint, float& x, float& y, float& z, int nodes[4], int& codeA,
                                     int& codeB);
  int readSurfaceElementBoundaryConditionBlockEntry(int& surfaceNo, int& count, const int*& list);
  // hasDictionary is 0 for an entry that was written without one.
  int readSurfaceElementBoundaryConditionNameBlockEntry(const char*& name, int& type, int& hasDictionary,
                                                        OFEIO_Dictionary& dictionary);
  int readMoldMetalLayerBlockEntry(int& matId, int& layerId, const char*& name, int& a, int& b, int& c,
                                   int& flag);
  int readPartInsertLayerBlockEntry(int& matId, int& layerId, const char*& name, int& a, int& b, int& c,
                                    int& flag);
  int readCoolantChannelLayerBlockEntry(int& matId, int& layerId, const char*& name);
  int readPartingDirectionBlockEntry(float& x, float& y, float& z);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};
