#pragma once

#include <cstdint>
#include <memory>

// One block of a block file: typed vectors ('I' int32, 'L' int64, 'F' float, 'D' double, 'C' bytes).
// Copies share nothing.
class BINIO_BinaryBlock {
 public:
  BINIO_BinaryBlock();
  ~BINIO_BinaryBlock();
  BINIO_BinaryBlock(const BINIO_BinaryBlock& other);
  BINIO_BinaryBlock& operator=(const BINIO_BinaryBlock& other);

  // Empties the block.
  void destroy();
  // Makes the block hold `count` empty vectors of the type. 1, or 0 for an unknown type or a negative count.
  int setVectorCount(char type, int count);
  // Resizes a vector, zeroing new values. 1, or 0 when there is no such vector.
  int setVectorSize(char type, int index, std::int64_t size);
  // Number of values, or -1 when there is no such vector.
  std::int64_t getVectorSize(char type, int index) const;
  // A value of an 'I' vector. Setting returns 1 or 0; getting a value that is not there gives 0.
  int setValue(int index, std::int64_t position, std::int32_t value);
  std::int32_t getValue(int index, std::int64_t position) const;
  // The values of an 'I' vector, null when there is no such vector or it is empty. Valid until the block is
  // emptied, read into or written into again, or the vector is resized.
  std::int32_t* setValues(int index);
  const std::int32_t* getValues(int index) const;

  struct Vectors;
  Vectors& vectors() { return *vectors_; }
  const Vectors& vectors() const { return *vectors_; }

 private:
  std::unique_ptr<Vectors> vectors_;
};

// A block file: begins with the byte "0", holds blocks addressable by id. One object reads one file and
// writes another one at the same time if need be; copies share the open files.
class BINIO_BinaryFile {
 public:
  BINIO_BinaryFile();
  ~BINIO_BinaryFile();
  BINIO_BinaryFile(const BINIO_BinaryFile&);
  BINIO_BinaryFile& operator=(const BINIO_BinaryFile&);

  // The block that readBlock fills and writeBlock stores.
  BINIO_BinaryBlock& currentBlock();

  int beginReading(const char* path, int mode);  // 1, or 0 when it is no sound block file; mode is not used
  int readBlock(long id);  // 1; 0 no such block or nothing open; -1 damaged: the current block then stays
  int endReading();

  int beginWriting(const char* path);  // 1, or 0 when the target cannot be created
  int writeBlock(long id);  // 1, or 0 when nothing is open, the id was written before or the disk is full
  int endWriting();         // 1 when the complete file stands at its name

 private:
  struct Files;
  BINIO_BinaryBlock readBlock_;
  std::shared_ptr<Files> files_;
};
