#include "MPPImporter/Mapper/mapping/KVMSPIObjectMapperBase.h"

KVMSPIObjectMapperBase::KVMSPIObjectMapperBase(KVMSPIMapper& mapper) : _mapper(mapper) {}

KVMSPIObjectMapperBase::~KVMSPIObjectMapperBase() = default;
