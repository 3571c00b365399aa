#pragma once

class KVMSPEMapper;

// The base of every export object mapper: the way back to the driver of the export, whose documents,
// id translation, counters and calendar mapper all object mappers share. The driver outlives them.
class KVMSPEObjectMapperBase {
public:
    explicit KVMSPEObjectMapperBase(KVMSPEMapper& mapper) : _mapper(mapper) {}
    virtual ~KVMSPEObjectMapperBase() = default;

    KVMSPEMapper& mapper() const { return _mapper; }

private:
    KVMSPEMapper& _mapper;
};
