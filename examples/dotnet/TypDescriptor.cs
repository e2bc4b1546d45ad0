// The C interface for .NET: every record and every function of c/typdescriptor.h as a host in C# declares them.
//
// A record is handed over by reference: where the library leaves it as it is, it stays as it is. Texts in records are
// bytes of Latin-1, ended by a NUL where there is room for it: Text() makes them strings. Names of files go to the
// system in its own code page.

using System;
using System.Runtime.InteropServices;
using System.Text;

namespace TypDescriptor
{
    /// <summary>GSD_WARNING_ITEM</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct GsdWarning
    {
        public int Code;
        public uint LineNumber;
    }

    /// <summary>SLAVE_TYPE_HEADER_INFO</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct SlaveTypeHeader
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 5)] public byte[] Version;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 18)] public byte[] ModelName;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 11)] public byte[] VendorName;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 11)] public byte[] Family;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 11)] public byte[] Periphery;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)] public byte[] StationType;
        public ushort IdentNumber;
        public int MakerDevice;
        public int HeaderCnf;
    }

    /// <summary>SLAVE_TYPEDATA_TYPE</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct SlaveTypeData
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 18)] public byte[] ModelName;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 16)] public byte[] StationType;
        public ushort IdentNumber;
        public int AsicType;
        public uint Features;
        public ushort MinSlaveInterval;
        public ushort BaudRates;
        public int MaxInputLen;
        public int MaxOutputLen;
        public int MaxModule;
        public int MaxDiagDataLen;
        public int UserPrmDataLen;
        public int UserPrmDataLenRead;
        public int CommonPrmDataLen;
        public int MaxDataLen;
        public int MaxInputBits;
        public int MaxOutputBits;
        public int EterDelay;
        public int MaxResponseDelay;
        public int SlotCount;
        public int KgpDevice;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 237)] public byte[] UserPrmData;
        public byte Cat2Digit0;
        public int Cat2Flag4;
        public byte Cat2Digit8;
        public byte Cat2Digit12;
        public byte Cat2Digit16;
        public int Cat2Flag20;
    }

    /// <summary>CSLAVE_SLOT_PRESET_TYPE</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct Preset
    {
        public int Kind;
        public byte Identifier;
        public sbyte LengthByte1;
        public sbyte LengthByte2;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 14)] public byte[] MfrData;
        public int XSlot;
    }

    /// <summary>MLFB_ITEM</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct Module
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 31)] public byte[] Mlfb;
        public Preset Preset;
        public int SpIndex;
        public ushort KgpId;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 3)] public byte[] KgpData;
    }

    /// <summary>LSK_ITEM</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct ModuleListEntry
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 21)] public byte[] Text;
        public Module Item;
    }

    /// <summary>SLOT_NUMBERING_TYPE</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct SlotNumbering
    {
        public int Value1;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)] public byte[] Text;
        public int Value2;
        public int Digit;
    }

    /// <summary>SLAVE_DIAG_TYPE</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct DiagnosisText
    {
        public int SetFound;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 31)] public byte[] SetText;
        public int ClearFound;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 31)] public byte[] ClearText;
    }

    /// <summary>SLAVE_BGR_DIAG_TYPE</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct BitGroupText
    {
        public byte ByteHigh;
        public byte ByteLow;
        public byte FirstBit;
        public byte LastBit;
        public ushort Value;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 31)] public byte[] Text;
    }

    /// <summary>KEYWORD_TYPE</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KeywordRecord
    {
        public int ByteOffset;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)] public byte[] DataType;
    }

    /// <summary>_parastruct</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct Parameter
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)] public byte[] Reference;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 31)] public byte[] Name;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)] public byte[] DataType;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 9)] public byte[] DefaultValue;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 7)] public byte[] MinValue;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 7)] public byte[] MaxValue;
        public int HelpNumber;
    }

    /// <summary>PARA_HELPMESSAGE_TYPE</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct HelpMessage
    {
        public ushort Value;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 31)] public byte[] Text;
    }

    /// <summary>TYPEFILE_COM_QX410</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct HostRecord
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 49)] public byte[] HeadLine;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 31)] public byte[] OrderNumber;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 18)] public byte[] ModelName;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 11)] public byte[] VendorName;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 11)] public byte[] Family;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 11)] public byte[] Periphery;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)] public byte[] IdentNumber;
        public int SetSlaveAddSupp;
        public int SyncModeSupp;
        public int FreezeModeSupp;
        public int PublisherSubscriber;
        public int DiagBufferable;
        public int ActiveOrMaster;
        public int EvenSlotNumberRequired;
        public int ModularStation;
        public byte AsicCode;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)] public byte[] MinSlaveInterval;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 9)] public int[] BaudRates;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)] public byte[] MaxInputLen;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)] public byte[] MaxOutputLen;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)] public byte[] MaxModule;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)] public byte[] MaxDiagDataLen;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 4)] public byte[] UserPrmDataLen;
        public IntPtr UserPrmHex;
        public IntPtr FixedSlotText;
    }

    /// <summary>One device type; closed when it is disposed of.</summary>
    public sealed class DeviceHandle : SafeHandle
    {
        public DeviceHandle() : base(IntPtr.Zero, true) { }

        public override bool IsInvalid
        {
            get { return handle == IntPtr.Zero; }
        }

        protected override bool ReleaseHandle()
        {
            Native.typdescriptor_close(handle);
            return true;
        }
    }

    public static class Native
    {
        private const string Library = "typdescriptor_c";

        public static string Text(byte[] characters)
        {
            int length = Array.IndexOf(characters, (byte)0);
            return Encoding.GetEncoding("ISO-8859-1").GetString(characters, 0, length < 0 ? characters.Length : length);
        }

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern DeviceHandle typdescriptor_open(string fileName, int writeFlag, string outputName);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern DeviceHandle typdescriptor_openRecord(ref HostRecord record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern DeviceHandle typdescriptor_openObject(ushort size, byte[] data);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern void typdescriptor_close(IntPtr device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern IntPtr typdescriptor_resultText(int code);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getStatus(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getGsdErrLineNr(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getGsdCntOfWarnings(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern void typdescriptor_getGsdWarnings(DeviceHandle device, [In, Out] GsdWarning[] dst);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getGsdRevision(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern void typdescriptor_getGsdFoundMandatories(DeviceHandle device, [Out] byte[] dst);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_checkTypeFileContents(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getCOMTypeData(DeviceHandle device, ref HostRecord record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern ushort typdescriptor_getDataSize(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_writeObject(DeviceHandle device, [Out] byte[] buffer);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern ushort typdescriptor_writeTypeFile(DeviceHandle device, string path);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_changeTypeFilePossible(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern ushort typdescriptor_getMLFBstring(DeviceHandle device, [Out] byte[] text);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern ushort typdescriptor_getSlaveTypeHeader(DeviceHandle device, ref SlaveTypeHeader record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern ushort typdescriptor_getSlaveTypeData(DeviceHandle device, ref SlaveTypeData record);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getFamily(DeviceHandle device, [Out] byte[] text);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getBitMapFileName(DeviceHandle device, [Out] byte[] name);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getDLLFileName(DeviceHandle device, [Out] byte[] name);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSlotOffset(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_isModular(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_isKonfigFixed(DeviceHandle device, ref int count);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_isPresetKonfigFixed(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getFixedSlotId(DeviceHandle device, int index, ref Preset preset);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getFixedSlotItem(DeviceHandle device, int index, ref Module item);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSlotNumbering(DeviceHandle device, ref SlotNumbering numbering);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getMaxSPBlockLen(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSlaveDiagMsgCnt(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSlaveDiagMsg(
            DeviceHandle device, int byteHigh, int byteLow, int bit, ref DiagnosisText message);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSlaveBGrDiagMsgCnt(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSlaveBGrDiagMsg(
            DeviceHandle device, int index, ref BitGroupText message);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getChannelDiagMsgCnt(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getChannelDiagMsg(DeviceHandle device, int errorType, [Out] byte[] text);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getMLFBListCnt(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getMLFBListItem(DeviceHandle device, int index, ref Module item);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getLSKCnt(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getLSKText(DeviceHandle device, int index, [Out] byte[] text);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSKListCnt(DeviceHandle device, int index, ref int vFlag);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSKListItem(
            DeviceHandle device, int index, int item, ref ModuleListEntry entry);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getParaStructCnt(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getParaStruct(DeviceHandle device, int index, ref Parameter entry);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getStructuredSlotParameterCnt(DeviceHandle device, int block);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getStructuredSlotParameter(
            DeviceHandle device, int block, int index, ref Parameter entry);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSlotParameters(
            DeviceHandle device, int index, [Out] byte[] bytes, ref int length);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_hasSPBlockThisKeyWord(
            DeviceHandle device, ref KeywordRecord keyword, int index, int which);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getHelpMessageCnt(DeviceHandle device, int block);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getParaHelpMessage(
            DeviceHandle device, int block, int line, ref HelpMessage message);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSPHelpCnt(DeviceHandle device, int block);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSPHelpItem(
            DeviceHandle device, int block, int line, ref HelpMessage message);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSPBlockAnz(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getSPHelpAnz(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getPSLHelpAnz(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_getPSLHelpRef(DeviceHandle device, int i);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_isMLFBModeP36(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern int typdescriptor_isP36KY(DeviceHandle device);

        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
        public static extern IntPtr typdescriptor_getDKMPos(DeviceHandle device);
    }
}
