#pragma once

class KVMSPIMapper;

// Base of the mappers of one kind of object: each knows the mapper of its scenario, which outlives it.
class KVMSPIObjectMapperBase {
public:
    explicit KVMSPIObjectMapperBase(KVMSPIMapper& mapper);
    virtual ~KVMSPIObjectMapperBase();
    KVMSPIObjectMapperBase(const KVMSPIObjectMapperBase&) = delete;
    KVMSPIObjectMapperBase& operator=(const KVMSPIObjectMapperBase&) = delete;

protected:
    KVMSPIMapper& _mapper;
};
