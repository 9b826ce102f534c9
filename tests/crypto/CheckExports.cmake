# Looks the key service up in the dynamic symbol table of PROGRAM.
execute_process(COMMAND ${NM} -D --defined-only ${PROGRAM}
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(APPEND symbols "\n")
set(missing "")
foreach(name IN ITEMS
    _ZTV6Crypto _ZN6CryptoC1Ev _ZN6CryptoD1Ev _Z10randomBytev
    _ZN6Crypto12GetPubKeyBinEP11evp_pkey_stPPhPm
    _ZN6Crypto6KeyGenEPP11evp_pkey_st
    _ZN6Crypto4signEPhmPS0_PmP11evp_pkey_stb
    _ZN6Crypto12GenerateKeysEPhS0_S0_S0_9CIHERTYPE
    _ZN6Crypto17GenerateSignatureEPhmS0_S0_PS0_PmbPc
    _ZN6Crypto15CalculateDigestEPhmS0_Pm
    _ZN6Crypto13GetHashPubKeyEP11evp_pkey_stPhPm
    _ZN6Crypto14SaveHashPubKeyEP11evp_pkey_stPh
    _ZN6Crypto12GetPubKeyDEREP11evp_pkey_stPPhPm
    _ZN6Crypto12GetPubKeyDEREPhPS0_Pm
    _ZN6Crypto10ReadPubKeyEPhPP11evp_pkey_st
    _ZN6Crypto10ReadPrvKeyEPhPP11evp_pkey_stPc
    _ZN6Crypto13ReadEncPrvKeyEPhPP11evp_pkey_stS0_Pc
    _ZN6Crypto12GetPrvKeyBinEPhPP11evp_pkey_st
    _ZN6Crypto10SavePrvKeyEPhP11evp_pkey_st
    _ZN6Crypto13SaveEncPrvKeyEPhP11evp_pkey_stS0_PK13evp_cipher_st
    _ZN6Crypto10SavePubKeyEPhP11evp_pkey_st
    _ZN6Crypto19DisplayRSAKeyParamsEP11evp_pkey_st
    _ZN6Crypto14Buffer_CleanupEPh
    _ZN6Crypto14generateSspKeyEPh _ZN6Crypto14generateSspKeyERK7QString
    _ZN6Crypto26generateEncryptionandNonceEPhi
    _ZN6Crypto26generateEncryptionandNonceERK7QStringi
    _ZN6Crypto5EC_DHEPPhS0_S0_j _ZN6Crypto9TestEC_DHEv
    _ZTV9EC_Crypto _ZN9EC_CryptoC1Ev _ZN9EC_CryptoC1Ei
    _ZN9EC_Crypto11SetCurveNIDEi
    _ZN9EC_Crypto6KeyGenEPP11evp_pkey_st
    _ZN9EC_Crypto12GetPubKeyBinEP11evp_pkey_stPPhPm
    _ZN9EC_Crypto12GetPubKeyBinEPhPS0_Pm
    _ZN9EC_Crypto15GetPubKeyBinDerEPhPS0_Pm
    _ZN9EC_Crypto12GenerateKeysEPhS0_S0_S0_9CIHERTYPE
    _ZN9EC_Crypto4signEPhmPS0_PmP11evp_pkey_st
    _ZN9EC_Crypto7bn_CopyEPhPKhj
    _Z21KeyDerivationFunctionPKvmPvPm)
    if(NOT symbols MATCHES " [TVW] ${name}\n")
        list(APPEND missing ${name})
    endif()
endforeach()
if(missing)
    message(FATAL_ERROR "not exported: ${missing}")
endif()
